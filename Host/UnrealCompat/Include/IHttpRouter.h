#pragma once

#include "HttpRouteHandle.h"

class IHttpRouter : public TSharedFromThis<IHttpRouter>
{
public:
	virtual ~IHttpRouter() = default;
	virtual FHttpRouteHandle BindRoute(const FHttpPath& HttpPath, const EHttpServerRequestVerbs& HttpVerbs, const FHttpRequestHandler& Handler) = 0;
	virtual void UnbindRoute(const FHttpRouteHandle& RouteHandle) = 0;
	virtual FDelegateHandle RegisterRequestPreprocessor(FHttpRequestHandler RequestPreprocessor) = 0;
	virtual void UnregisterRequestPreprocessor(const FDelegateHandle& RequestPreprocessorHandle) = 0;
	virtual bool Query(const TSharedPtr<FHttpServerRequest>& Request, const FHttpResultCallback& OnProcessingComplete) = 0;
};
