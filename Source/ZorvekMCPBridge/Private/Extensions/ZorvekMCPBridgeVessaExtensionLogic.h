// What a Vessa extension does, as portable code over the function port: parameter typing and
// JSON descriptions, discovery of actions and queries, context matching, marshalling and the two
// kinds of calls. The reflected UZorvekMCPBridgeVessaExtension and the simulated editor both run
// this code.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeFunctionPort.h"
#include "Extensions/ZorvekMCPBridgeVessaTypes.h"

namespace ZorvekMCPBridgeVessa
{
	// The extension base class every extension derives from.
	extern const TCHAR* const ExtensionBaseClassPath;

	// The parameter kind of a property, tested in a fixed order (first hit wins); None for null.
	EZorvekMCPBridgeVessaParameterKind GetParameterTypeForProperty(const FZorvekMCPBridgeFieldInfo* Property);
	// Writes "type" and, for arrays and custom structs, "arrayElement" / "structElement".
	void InsertPropertyAsJson(const FZorvekMCPBridgeFieldInfo& Property, FJsonObject& OutJson);
	// Builds {name, description, type...} and stores it, serialized, in ParameterTypeJsonString.
	void RefreshJsonString(FZorvekMCPBridgeVessaParameterInfo& Parameter, const FZorvekMCPBridgeFieldInfo& Property);

	// Parameters a caller passes in: not return values, and not outputs unless passed by reference.
	bool IsInputParameter(const FZorvekMCPBridgeFieldInfo& Parameter);
	// Parameters that come back: return values, and outputs not passed by reference.
	bool IsOutputParameter(const FZorvekMCPBridgeFieldInfo& Parameter);

	// The metadata keys discovery reads.
	const TArray<FString>& GetDiscoveryMetaDataKeys();
	// Appends the function to Actions or Queries when a marker makes it one; restores parameter
	// descriptions from SavedDescriptions.
	void DiscoverFunction(const FZorvekMCPBridgeFunctionInfo& Function, const TMap<FString, FString>& SavedDescriptions, FZorvekMCPBridgeVessaDefinitionData& Definition);
	// Rebuilds Actions and Queries from the class's functions, keeping typed descriptions.
	void DiscoverActionsAndQueries(IZorvekMCPBridgeFunctions& Functions, const FString& ClassPath, FZorvekMCPBridgeVessaDefinitionData& Definition);
	// The class default refresh: for any class but the base class, the id becomes the class path,
	// an empty name the class's display name, then discovery runs.
	void RefreshExtension(IZorvekMCPBridgeFunctions& Functions, const FString& ClassPath, FZorvekMCPBridgeVessaDefinitionData& Definition);

	// Whether the extension applies to an object (bHasObject false for none / invalid).
	bool MatchesContext(const FZorvekMCPBridgeVessaDefinitionData& Definition, bool bHasObject, const FString& ObjectClassName);
	bool ResolveFunctionName(const IZorvekMCPBridgeFunctions& Functions, const FString& ClassPath, const FZorvekMCPBridgeVessaDefinitionData& Definition,
		const FString& RequestedName, bool bAction, FString& OutFunctionName);

	// Fills the block's inputs from the JSON object (absent fields keep their initial value).
	bool BuildParamsFromJson(const FZorvekMCPBridgeFunctionInfo& Function, const TSharedPtr<FJsonObject>& Parameters, IZorvekMCPBridgeParameterBlock& Block);
	TSharedPtr<FJsonValue> GetJsonValueFromProperty(const FZorvekMCPBridgeFieldInfo& Property, const IZorvekMCPBridgeParameterBlock& Block, int32 ParameterIndex);

	FZorvekMCPBridgeVessaActionOutcome ExecuteAction(IZorvekMCPBridgeFunctions& Functions, FZorvekMCPBridgeObjectHandle Extension, const FString& ClassPath,
		const FZorvekMCPBridgeVessaDefinitionData& Definition, const TSharedPtr<FJsonObject>& Request);
	TSharedPtr<FJsonValue> ExecuteQuery(IZorvekMCPBridgeFunctions& Functions, FZorvekMCPBridgeObjectHandle Extension, const FString& ClassPath,
		const FZorvekMCPBridgeVessaDefinitionData& Definition, const TSharedPtr<FJsonObject>& Request);

	TSharedPtr<FJsonObject> GetExtensionDefinitionJson(const FZorvekMCPBridgeVessaDefinitionData& Definition);
}
