#include "Server/ZorvekMCPBridgeServer.h"

#include "Dom/JsonValue.h"

namespace
{
	const TCHAR* const ProtocolVersion = TEXT("2025-06-18");
	const TCHAR* const ServerName = TEXT("zorvek-unreal-mcp-bridge");
	const TCHAR* const ServerVersion = TEXT("1.0.0");

	TSharedPtr<FJsonValue> RequestIdOf(const TSharedPtr<FJsonObject>& Request)
	{
		const TSharedPtr<FJsonValue> Id = Request.IsValid() ? Request->TryGetField(TEXT("id")) : TSharedPtr<FJsonValue>();
		return Id.IsValid() ? Id : MakeShared<FJsonValueNull>();
	}

	TSharedPtr<FJsonObject> MakeInitializeResult()
	{
		TSharedPtr<FJsonObject> Capabilities = MakeShared<FJsonObject>();
		Capabilities->SetObjectField(TEXT("tools"), MakeShared<FJsonObject>());

		TSharedPtr<FJsonObject> ServerInfo = MakeShared<FJsonObject>();
		ServerInfo->SetStringField(TEXT("name"), ServerName);
		ServerInfo->SetStringField(TEXT("version"), ServerVersion);

		TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
		Result->SetStringField(TEXT("protocolVersion"), ProtocolVersion);
		Result->SetObjectField(TEXT("capabilities"), Capabilities);
		Result->SetObjectField(TEXT("serverInfo"), ServerInfo);
		return Result;
	}

	// JSON types, not the reader's coercions: a numeric "method" is not a method name.
	bool TryGetTypedString(const TSharedPtr<FJsonObject>& Object, const TCHAR* Name, FString& OutValue)
	{
		const TSharedPtr<FJsonValue> Field = Object->TryGetField(Name);
		return Field.IsValid() && Field->Type == EJson::String && Field->TryGetString(OutValue);
	}

	TSharedPtr<FJsonObject> TryGetTypedObject(const TSharedPtr<FJsonObject>& Object, const TCHAR* Name)
	{
		const TSharedPtr<FJsonValue> Field = Object->TryGetField(Name);
		return Field.IsValid() && Field->Type == EJson::Object ? Field->AsObject() : TSharedPtr<FJsonObject>();
	}
}

TSharedPtr<FJsonObject> FZorvekMCPBridgeServer::MakeResultResponse(const TSharedPtr<FJsonObject>& Request, const TSharedPtr<FJsonObject>& Result)
{
	TSharedPtr<FJsonObject> Envelope = MakeShared<FJsonObject>();
	Envelope->SetStringField(TEXT("jsonrpc"), TEXT("2.0"));
	Envelope->SetField(TEXT("id"), RequestIdOf(Request));
	Envelope->SetObjectField(TEXT("result"), Result.IsValid() ? Result : MakeShared<FJsonObject>());
	return Envelope;
}

TSharedPtr<FJsonObject> FZorvekMCPBridgeServer::MakeErrorResponse(const TSharedPtr<FJsonObject>& Request, int32 Code, const FString& Message)
{
	TSharedPtr<FJsonObject> Error = MakeShared<FJsonObject>();
	Error->SetNumberField(TEXT("code"), Code);
	Error->SetStringField(TEXT("message"), Message);

	TSharedPtr<FJsonObject> Envelope = MakeShared<FJsonObject>();
	Envelope->SetStringField(TEXT("jsonrpc"), TEXT("2.0"));
	Envelope->SetField(TEXT("id"), RequestIdOf(Request));
	Envelope->SetObjectField(TEXT("error"), Error);
	return Envelope;
}

TSharedPtr<FJsonObject> FZorvekMCPBridgeServer::MakeErrorResponse(int32 Code, const FString& Message)
{
	return MakeErrorResponse(TSharedPtr<FJsonObject>(), Code, Message);
}

TSharedPtr<FJsonObject> FZorvekMCPBridgeServer::HandleJsonRpcRequest(const TSharedPtr<FJsonObject>& Request)
{
	FString Method;
	if (!Request.IsValid() || !TryGetTypedString(Request, TEXT("method"), Method))
	{
		return MakeErrorResponse(Request, -32600, TEXT("Invalid Request: missing method"));
	}

	// Method names compare case-insensitively; the first match decides.
	if (Method.Equals(TEXT("initialize"), ESearchCase::IgnoreCase))
	{
		return MakeResultResponse(Request, MakeInitializeResult());
	}
	if (Method.Equals(TEXT("notifications/initialized"), ESearchCase::IgnoreCase))
	{
		return Request->HasField(TEXT("id")) ? MakeResultResponse(Request, MakeShared<FJsonObject>()) : TSharedPtr<FJsonObject>();
	}
	if (Method.Equals(TEXT("ping"), ESearchCase::IgnoreCase))
	{
		return MakeResultResponse(Request, MakeShared<FJsonObject>());
	}
	if (Method.Equals(TEXT("tools/list"), ESearchCase::IgnoreCase))
	{
		return BuildToolsListResult(Request);
	}
	if (Method.Equals(TEXT("tools/call"), ESearchCase::IgnoreCase))
	{
		const TSharedPtr<FJsonObject> Params = TryGetTypedObject(Request, TEXT("params"));
		if (!Params.IsValid())
		{
			return MakeErrorResponse(Request, -32602, TEXT("Invalid params: tools/call requires params object"));
		}
		FString ToolName;
		if (!TryGetTypedString(Params, TEXT("name"), ToolName))
		{
			return MakeErrorResponse(Request, -32602, TEXT("Invalid params: missing tool name"));
		}
		TSharedPtr<FJsonObject> Arguments = TryGetTypedObject(Params, TEXT("arguments"));
		if (!Arguments.IsValid())
		{
			Arguments = MakeShared<FJsonObject>();
		}
		const TSharedPtr<FJsonObject> ToolResult = ExecuteTool(ToolName, Arguments);
		if (!ToolResult.IsValid())
		{
			return MakeErrorResponse(Request, -32601, FString::Printf(TEXT("Unknown tool: %s"), *ToolName));
		}
		return MakeResultResponse(Request, ToolResult);
	}
	return MakeErrorResponse(Request, -32601, FString::Printf(TEXT("Method not found: %s"), *Method));
}
