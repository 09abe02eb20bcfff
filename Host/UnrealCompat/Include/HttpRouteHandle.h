#pragma once

#include "HttpPath.h"
#include "HttpRequestHandler.h"

struct FHttpRouteHandleInternal
{
	FHttpRouteHandleInternal(const FString& InPath, EHttpServerRequestVerbs InVerbs, const FHttpRequestHandler& InHandler)
		: Path(InPath), Verbs(InVerbs), Handler(InHandler) {}
	FString Path;
	EHttpServerRequestVerbs Verbs;
	FHttpRequestHandler Handler;
};

typedef TSharedPtr<const FHttpRouteHandleInternal> FHttpRouteHandle;
