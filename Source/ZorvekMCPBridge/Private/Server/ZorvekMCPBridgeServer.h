#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "HttpResultCallback.h"
#include "HttpRouteHandle.h"

class IHttpRouter;
class IZorvekMCPBridgeEditorPort;
struct FHttpServerRequest;

// The local MCP endpoint: POST "/mcp" on 127.0.0.1, on the first port of 25 that binds. Every
// request is answered on the game thread, one queued task per request.
class FZorvekMCPBridgeServer : public TSharedFromThis<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>
{
public:
	static constexpr uint16 DefaultPort = 8765;
	static constexpr uint16 PortsTried = 25;
	static const TCHAR* const RoutePath;
	static const TCHAR* const ResponseContentType;

	FZorvekMCPBridgeServer();
	~FZorvekMCPBridgeServer();

	bool Start(uint16 StartPort);
	void Stop();
	bool IsRunning() const { return bRunning; }
	uint16 GetPort() const { return Port; }
	FString GetEndpointUrl() const;

	bool HandleRequest(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete);

	// JSON-RPC: the envelope that answers one request object, or null for a notification that
	// gets no answer.
	TSharedPtr<FJsonObject> HandleJsonRpcRequest(const TSharedPtr<FJsonObject>& Request);
	static TSharedPtr<FJsonObject> MakeResultResponse(const TSharedPtr<FJsonObject>& Request, const TSharedPtr<FJsonObject>& Result);
	static TSharedPtr<FJsonObject> MakeErrorResponse(const TSharedPtr<FJsonObject>& Request, int32 Code, const FString& Message);
	static TSharedPtr<FJsonObject> MakeErrorResponse(int32 Code, const FString& Message);

	// The tool catalogue and dispatch.
	TSharedPtr<FJsonObject> BuildToolsListResult(const TSharedPtr<FJsonObject>& Request);
	TSharedPtr<FJsonObject> ExecuteTool(const FString& ToolName, const TSharedPtr<FJsonObject>& Arguments);

	// The pretty-printed JSON text of bodies and tool results.
	static FString SerializeJson(const TSharedPtr<FJsonObject>& Object);

	// The editor the tools work on, handed to every tool call.
	void SetEditorPort(const TSharedPtr<IZorvekMCPBridgeEditorPort>& InEditorPort) { EditorPort = InEditorPort; }
	IZorvekMCPBridgeEditorPort* GetEditorPort() const { return EditorPort.Get(); }

private:
	bool TryBindPort(uint16 CandidatePort);
	bool VerifyLocalTcpPort(uint16 CandidatePort) const;
	void ProcessRequest(const FString& Body, const FHttpResultCallback& OnComplete);

	TSharedPtr<IHttpRouter> Router;
	FHttpRouteHandle RouteHandle;
	FDelegateHandle RequestGuardHandle;
	uint16 Port = 0;
	bool bRunning = false;
	TSharedPtr<IZorvekMCPBridgeEditorPort> EditorPort;
};
