#pragma once

#include "Delegates/Delegate.h"
#include "HttpResultCallback.h"
#include "HttpServerRequest.h"

using FHttpRequestHandler = TDelegate<bool(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)>;
