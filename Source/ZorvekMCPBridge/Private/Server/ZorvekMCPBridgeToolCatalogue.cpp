#include "Server/ZorvekMCPBridgeToolCatalogue.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Server/ZorvekMCPBridgeServer.h"

const FZorvekMCPBridgeToolDefinition* ZorvekMCPBridgeTools::FindTool(const FString& ToolName)
{
	for (const FZorvekMCPBridgeToolDefinition& Tool : GetToolTable())
	{
		if (ToolName.Equals(Tool.Name, ESearchCase::IgnoreCase))
		{
			return &Tool;
		}
	}
	return nullptr;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeTools::MakeObjectSchema()
{
	TSharedPtr<FJsonObject> Schema = MakeShared<FJsonObject>();
	Schema->SetStringField(TEXT("type"), TEXT("object"));
	Schema->SetObjectField(TEXT("properties"), MakeShared<FJsonObject>());
	return Schema;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeTools::MakeStringProperty(const FString& Description)
{
	TSharedPtr<FJsonObject> Property = MakeShared<FJsonObject>();
	Property->SetStringField(TEXT("type"), TEXT("string"));
	Property->SetStringField(TEXT("description"), Description);
	return Property;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeTools::MakeObjectProperty(const FString& Description)
{
	TSharedPtr<FJsonObject> Property = MakeShared<FJsonObject>();
	Property->SetStringField(TEXT("type"), TEXT("object"));
	Property->SetStringField(TEXT("description"), Description);
	Property->SetBoolField(TEXT("additionalProperties"), true);
	return Property;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeTools::MakeToolDescriptor(const FString& Name, const FString& Description, const TSharedPtr<FJsonObject>& InputSchema)
{
	TSharedPtr<FJsonObject> Descriptor = MakeShared<FJsonObject>();
	Descriptor->SetStringField(TEXT("name"), Name);
	Descriptor->SetStringField(TEXT("description"), Description);
	Descriptor->SetObjectField(TEXT("inputSchema"), InputSchema);
	return Descriptor;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeTools::MakeToolDescriptor(const FZorvekMCPBridgeToolDefinition& Tool)
{
	TSharedPtr<FJsonObject> Schema = MakeObjectSchema();
	const TSharedPtr<FJsonObject>& Properties = Schema->GetObjectField(TEXT("properties"));
	TArray<TSharedPtr<FJsonValue>> Required;
	for (const FZorvekMCPBridgeToolParameter& Parameter : Tool.Parameters)
	{
		Properties->SetObjectField(Parameter.Name, Parameter.Form == EZorvekMCPBridgeParameterForm::Structured
			? MakeObjectProperty(Parameter.Description)
			: MakeStringProperty(Parameter.Description));
		if (Parameter.bRequired)
		{
			Required.Add(MakeShared<FJsonValueString>(Parameter.Name));
		}
	}
	if (!Required.IsEmpty())
	{
		Schema->SetArrayField(TEXT("required"), Required);
	}
	return MakeToolDescriptor(Tool.Name, Tool.Description, Schema);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeTools::MakeStructuredToolResult(const TSharedPtr<FJsonObject>& Payload, bool bIsError)
{
	const TSharedPtr<FJsonObject> Content = Payload.IsValid() ? Payload : MakeShared<FJsonObject>();
	TSharedPtr<FJsonObject> Result = MakeTextToolResult(FZorvekMCPBridgeServer::SerializeJson(Content), bIsError);
	Result->SetObjectField(TEXT("structuredContent"), Content);
	return Result;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeTools::MakeTextToolResult(const FString& Message, bool bIsError)
{
	TSharedPtr<FJsonObject> TextItem = MakeShared<FJsonObject>();
	TextItem->SetStringField(TEXT("type"), TEXT("text"));
	TextItem->SetStringField(TEXT("text"), Message);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetArrayField(TEXT("content"), TArray<TSharedPtr<FJsonValue>>{MakeShared<FJsonValueObject>(TextItem)});
	Result->SetBoolField(TEXT("isError"), bIsError);
	return Result;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeTools::MakeNotAvailableYetResult(const FString& ToolName)
{
	// Plain about the cause, so an agent neither retries with other arguments nor concludes the
	// bridge can never do it.
	return MakeTextToolResult(FString::Printf(TEXT("%s is not available in this build of Zorvek MCP Bridge yet: the tool is listed, but this build does not implement it. Other tools from tools/list may cover the task; unreal_recommend_tools suggests them."), *ToolName), true);
}

TSharedPtr<FJsonObject> FZorvekMCPBridgeServer::BuildToolsListResult(const TSharedPtr<FJsonObject>& Request)
{
	// Built anew on every call, in table order.
	TArray<TSharedPtr<FJsonValue>> Tools;
	for (const FZorvekMCPBridgeToolDefinition& Tool : ZorvekMCPBridgeTools::GetToolTable())
	{
		if (Tool.bListed)
		{
			Tools.Add(MakeShared<FJsonValueObject>(ZorvekMCPBridgeTools::MakeToolDescriptor(Tool)));
		}
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetArrayField(TEXT("tools"), Tools);
	return MakeResultResponse(Request, Result);
}

TSharedPtr<FJsonObject> FZorvekMCPBridgeServer::ExecuteTool(const FString& ToolName, const TSharedPtr<FJsonObject>& Arguments)
{
	const FZorvekMCPBridgeToolDefinition* Tool = ZorvekMCPBridgeTools::FindTool(ToolName);
	if (!Tool)
	{
		return nullptr;
	}
	if (!Tool->Handler)
	{
		return ZorvekMCPBridgeTools::MakeNotAvailableYetResult(Tool->Name);
	}
	FZorvekMCPBridgeToolContext Context{*this, EditorPort.Get()};
	return Tool->Handler(Context, Arguments.IsValid() ? Arguments : MakeShared<FJsonObject>());
}
