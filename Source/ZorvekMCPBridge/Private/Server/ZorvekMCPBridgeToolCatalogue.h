#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

class FZorvekMCPBridgeServer;
class IZorvekMCPBridgeEditorPort;

// What a tool handler gets besides its arguments.
struct FZorvekMCPBridgeToolContext
{
	FZorvekMCPBridgeServer& Server;
	// The editor the tools read and change; null in a process without one.
	IZorvekMCPBridgeEditorPort* EditorPort = nullptr;
};

typedef TSharedPtr<FJsonObject> (*FZorvekMCPBridgeToolHandler)(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);

// The two schema forms of a parameter: scalars are declared as strings, maps and arrays as
// objects with additional properties.
enum class EZorvekMCPBridgeParameterForm : uint8
{
	Text,
	Structured
};

struct FZorvekMCPBridgeToolParameter
{
	const TCHAR* Name;
	const TCHAR* Description;
	EZorvekMCPBridgeParameterForm Form = EZorvekMCPBridgeParameterForm::Text;
	bool bRequired = false;
};

// One row of the declarative tool table that drives both "tools/list" and dispatch.
struct FZorvekMCPBridgeToolDefinition
{
	const TCHAR* Name;
	const TCHAR* Description;
	TArray<FZorvekMCPBridgeToolParameter> Parameters;
	FZorvekMCPBridgeToolHandler Handler;
	// False for names the dispatch chain knows but the catalogue does not list.
	bool bListed = true;
};

namespace ZorvekMCPBridgeTools
{
	// The table, in catalogue order; unlisted aliases follow the tool they alias.
	const TArray<FZorvekMCPBridgeToolDefinition>& GetToolTable();

	// Case-insensitive lookup over the whole dispatch chain; null when no tool has the name.
	const FZorvekMCPBridgeToolDefinition* FindTool(const FString& ToolName);

	TSharedPtr<FJsonObject> MakeObjectSchema();
	TSharedPtr<FJsonObject> MakeStringProperty(const FString& Description);
	TSharedPtr<FJsonObject> MakeObjectProperty(const FString& Description);
	TSharedPtr<FJsonObject> MakeToolDescriptor(const FString& Name, const FString& Description, const TSharedPtr<FJsonObject>& InputSchema);
	TSharedPtr<FJsonObject> MakeToolDescriptor(const FZorvekMCPBridgeToolDefinition& Tool);

	// The tool result envelope: "content" with one text item, "isError", and for the structured
	// form "structuredContent" holding the payload whose pretty text is the content.
	TSharedPtr<FJsonObject> MakeStructuredToolResult(const TSharedPtr<FJsonObject>& Payload, bool bIsError);
	TSharedPtr<FJsonObject> MakeTextToolResult(const FString& Message, bool bIsError);

	// The answer of a tool that a later release of this build brings.
	TSharedPtr<FJsonObject> MakeNotAvailableYetResult(const FString& ToolName);
}
