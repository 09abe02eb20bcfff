#pragma once

#include "HttpServerResponse.h"
#include "Templates/Function.h"

typedef TFunction<void(TUniquePtr<FHttpServerResponse>&& Response)> FHttpResultCallback;
