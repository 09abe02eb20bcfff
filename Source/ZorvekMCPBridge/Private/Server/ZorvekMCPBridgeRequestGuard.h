#pragma once

#include "CoreMinimal.h"
#include "HttpResultCallback.h"

struct FHttpServerRequest;

// Drive-by protection for the endpoint's port: a request whose Host header names anything but
// a loopback host, or whose Origin header is present and is not a loopback origin, is refused
// with HTTP 403 before any JSON-RPC handling. This closes DNS-rebinding and web-page attacks;
// MCP clients (loopback Host, no Origin) are not affected.
namespace ZorvekMCPBridgeRequestGuard
{
	bool IsLoopbackHost(const FString& HostHeader);
	bool IsLoopbackOrigin(const FString& OriginHeader);

	// A request preprocessor: returns true (handled, answered 403) for a refused request.
	bool RefuseForeignRequest(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete);
}
