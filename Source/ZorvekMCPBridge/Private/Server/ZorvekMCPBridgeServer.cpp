#include "Server/ZorvekMCPBridgeServer.h"

#include "Async/Async.h"
#include "Containers/StringConv.h"
#include "HttpServerModule.h"
#include "HttpServerRequest.h"
#include "HttpServerResponse.h"
#include "IHttpRouter.h"
#include "IPAddress.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "Server/ZorvekMCPBridgeRequestGuard.h"
#include "SocketSubsystem.h"
#include "Sockets.h"
#include "ZorvekMCPBridgeLog.h"

const TCHAR* const FZorvekMCPBridgeServer::RoutePath = TEXT("/mcp");
const TCHAR* const FZorvekMCPBridgeServer::ResponseContentType = TEXT("application/json; charset=utf-8");

FZorvekMCPBridgeServer::FZorvekMCPBridgeServer() = default;

FZorvekMCPBridgeServer::~FZorvekMCPBridgeServer() = default;

FString FZorvekMCPBridgeServer::GetEndpointUrl() const
{
	return Port != 0 ? FString::Printf(TEXT("http://127.0.0.1:%d%s"), (int32)Port, RoutePath) : FString(TEXT("stopped"));
}

bool FZorvekMCPBridgeServer::Start(uint16 StartPort)
{
	if (bRunning)
	{
		UE_LOG(LogZorvekMCPBridge, Display, TEXT("Zorvek MCP Bridge already running at %s"), *GetEndpointUrl());
		return true;
	}

	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Starting Zorvek MCP Bridge. HTTPServer available: %s"), FHttpServerModule::IsAvailable() ? TEXT("true") : TEXT("false"));
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Enabling HTTPServer listeners before binding routes"));
	FHttpServerModule& HttpServerModule = FHttpServerModule::Get();
	HttpServerModule.StartAllListeners();

	const uint16 BasePort = StartPort != 0 ? StartPort : DefaultPort;
	uint16 CandidatePort = BasePort;
	while (true)
	{
		UE_LOG(LogZorvekMCPBridge, Display, TEXT("Trying MCP endpoint port %d"), (int32)CandidatePort);
		if (TryBindPort(CandidatePort))
		{
			break;
		}
		++CandidatePort;
		if ((uint16)(CandidatePort - BasePort) >= PortsTried)
		{
			UE_LOG(LogZorvekMCPBridge, Error, TEXT("Zorvek MCP Bridge failed to bind a port starting at %d"), (int32)BasePort);
			return false;
		}
	}

	Port = CandidatePort;
	bRunning = true;

	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Route bound. Starting HTTPServer listeners after route registration"));
	HttpServerModule.StartAllListeners();

	const bool bVerified = VerifyLocalTcpPort(Port);
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Zorvek MCP Bridge listening at %s"), *GetEndpointUrl());
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Zorvek MCP Bridge local TCP verification for 127.0.0.1:%d: %s"), (int32)Port, bVerified ? TEXT("success") : TEXT("failed"));
	return true;
}

bool FZorvekMCPBridgeServer::TryBindPort(uint16 CandidatePort)
{
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Requesting HTTP router for port %d"), (int32)CandidatePort);
	// Failing on bind failure makes a port held by another process yield no router.
	TSharedPtr<IHttpRouter> CandidateRouter = FHttpServerModule::Get().GetHttpRouter(CandidatePort, true);
	if (!CandidateRouter.IsValid())
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("HTTPServer failed to create/listen with router for port %d"), (int32)CandidatePort);
		return false;
	}

	UE_LOG(LogZorvekMCPBridge, Display, TEXT("HTTP router is valid for port %d. Binding POST %s"), (int32)CandidatePort, RoutePath);
	FHttpRouteHandle CandidateHandle = CandidateRouter->BindRoute(FHttpPath(RoutePath), EHttpServerRequestVerbs::VERB_POST,
		FHttpRequestHandler::CreateSP(AsShared(), &FZorvekMCPBridgeServer::HandleRequest));
	if (!CandidateHandle.IsValid())
	{
		// The path is already bound on that router, for instance by another bridge in this editor.
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("HTTPServer failed to bind POST %s on port %d"), RoutePath, (int32)CandidatePort);
		return false;
	}

	UE_LOG(LogZorvekMCPBridge, Display, TEXT("HTTP route POST %s bound on port %d"), RoutePath, (int32)CandidatePort);
	Router = CandidateRouter;
	RouteHandle = CandidateHandle;
	RequestGuardHandle = Router->RegisterRequestPreprocessor(FHttpRequestHandler::CreateStatic(&ZorvekMCPBridgeRequestGuard::RefuseForeignRequest));
	return true;
}

bool FZorvekMCPBridgeServer::VerifyLocalTcpPort(uint16 CandidatePort) const
{
	ISocketSubsystem* SocketSubsystem = ISocketSubsystem::Get(PLATFORM_SOCKETSUBSYSTEM);
	if (!SocketSubsystem)
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("Socket subsystem unavailable; cannot verify local TCP port"));
		return false;
	}

	TSharedRef<FInternetAddr> Address = SocketSubsystem->CreateInternetAddr();
	bool bValidIp = false;
	Address->SetIp(TEXT("127.0.0.1"), bValidIp);
	Address->SetPort(CandidatePort);
	if (!bValidIp)
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("Could not build loopback verification address for 127.0.0.1:%d"), (int32)CandidatePort);
		return false;
	}

	FSocket* Socket = SocketSubsystem->CreateSocket(NAME_Stream, TEXT("ZorvekMCPBridgePortVerification"), false);
	if (!Socket)
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("Could not create socket for local TCP verification"));
		return false;
	}

	const bool bConnected = Socket->Connect(*Address);
	Socket->Close();
	SocketSubsystem->DestroySocket(Socket);
	return bConnected;
}

void FZorvekMCPBridgeServer::Stop()
{
	if (Router.IsValid() && RouteHandle.IsValid())
	{
		Router->UnbindRoute(RouteHandle);
		RouteHandle.Reset();
	}
	if (Router.IsValid() && RequestGuardHandle.IsValid())
	{
		Router->UnregisterRequestPreprocessor(RequestGuardHandle);
		RequestGuardHandle.Reset();
	}
	if (bRunning)
	{
		UE_LOG(LogZorvekMCPBridge, Display, TEXT("Zorvek MCP Bridge stopped"));
	}
	Router.Reset();
	Port = 0;
	bRunning = false;
	if (FHttpServerModule::IsAvailable())
	{
		// This stops every listener of the HTTP server module, not only this port's.
		FHttpServerModule::Get().StopAllListeners();
	}
}

bool FZorvekMCPBridgeServer::HandleRequest(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)
{
	int32 BodyLength = Request.Body.Num();
	if (BodyLength > 0 && Request.Body[BodyLength - 1] == 0)
	{
		--BodyLength;
	}
	FString Body = FString::ConstructFromPtrSize(reinterpret_cast<const UTF8CHAR*>(Request.Body.GetData()), BodyLength);

	if (IsInGameThread())
	{
		ProcessRequest(Body, OnComplete);
	}
	else
	{
		// The task keeps the server alive, so a stop racing this request still answers it.
		TSharedRef<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Self = AsShared();
		AsyncTask(ENamedThreads::GameThread, [Self, Body = MoveTemp(Body), OnComplete]()
		{
			Self->ProcessRequest(Body, OnComplete);
		});
	}
	return true;
}

void FZorvekMCPBridgeServer::ProcessRequest(const FString& Body, const FHttpResultCallback& OnComplete)
{
	TSharedPtr<FJsonObject> RequestObject;
	const TSharedRef<TJsonReader<>> Reader = TJsonReaderFactory<>::Create(Body);
	TSharedPtr<FJsonObject> Envelope;
	if (!FJsonSerializer::Deserialize(Reader, RequestObject) || !RequestObject.IsValid())
	{
		// Arrays (batches) and other non-objects are refused like malformed text.
		Envelope = MakeErrorResponse(-32700, TEXT("Parse error"));
	}
	else
	{
		Envelope = HandleJsonRpcRequest(RequestObject);
	}

	if (!Envelope.IsValid())
	{
		// A notification that gets no answer: HTTP 200 with an empty body. The engine's Ok()
		// helper would send 204, so the response is built here.
		TUniquePtr<FHttpServerResponse> Empty = MakeUnique<FHttpServerResponse>();
		Empty->Code = EHttpServerResponseCodes::Ok;
		OnComplete(MoveTemp(Empty));
		return;
	}

	// The byte form keeps the content type verbatim; the text form would append its own charset.
	const FString Text = SerializeJson(Envelope);
	const FTCHARToUTF8 Utf8(*Text, Text.Len());
	TArray<uint8> Bytes(reinterpret_cast<const uint8*>(Utf8.Get()), Utf8.Length());
	OnComplete(FHttpServerResponse::Create(MoveTemp(Bytes), FString(ResponseContentType)));
}

FString FZorvekMCPBridgeServer::SerializeJson(const TSharedPtr<FJsonObject>& Object)
{
	FString Text;
	const TSharedRef<TJsonWriter<>> Writer = TJsonWriterFactory<>::Create(&Text);
	FJsonSerializer::Serialize(Object.ToSharedRef(), Writer);
	return Text;
}
