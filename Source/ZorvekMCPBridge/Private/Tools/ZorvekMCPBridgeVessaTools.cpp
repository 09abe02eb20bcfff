#include "Tools/ZorvekMCPBridgeVessaTools.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Extensions/ZorvekMCPBridgeVessaExtensionLogic.h"
#include "Extensions/ZorvekMCPBridgeVessaExtensionRegistry.h"
#include "Serialization/JsonSerializer.h"
#include "Serialization/JsonWriter.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

namespace
{
	using ZorvekMCPBridgeToolArguments::ReadString;
	using ZorvekMCPBridgeTools::MakeStructuredToolResult;
	using ZorvekMCPBridgeTools::MakeTextToolResult;

	struct FVessaListParams
	{
		int32 Limit = 100;
	};

	struct FVessaSearchParams
	{
		FString Search;
		int32 Limit = 25;
	};

	// One extension call: the id, the function asked for, and the parameters object (empty when
	// the argument is absent or not an object).
	struct FVessaCallParams
	{
		FString ExtensionId;
		FString FunctionName;
		TSharedPtr<FJsonObject> Parameters;
	};

	FVessaCallParams ReadVessaCallParams(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* FunctionKey)
	{
		FVessaCallParams Params;
		Params.ExtensionId = ReadString(Arguments, TEXT("extension_id"), FString());
		Params.FunctionName = ReadString(Arguments, FunctionKey, FString());
		const TSharedPtr<FJsonObject>* Parameters = nullptr;
		Params.Parameters = Arguments.IsValid() && Arguments->TryGetObjectField(TEXT("parameters"), Parameters) ? *Parameters : MakeShared<FJsonObject>();
		return Params;
	}

	// Every word occurs in the text, ignoring case.
	bool VessaMatchesAllWords(const FString& Text, const TArray<FString>& Words)
	{
		for (const FString& Word : Words)
		{
			if (!Text.Contains(Word, ESearchCase::IgnoreCase))
			{
				return false;
			}
		}
		return true;
	}

	TSharedPtr<FJsonObject> VessaCapabilityMatch(const TCHAR* Type, const FString& Name, const FString& Description)
	{
		TSharedPtr<FJsonObject> Match = MakeShared<FJsonObject>();
		Match->SetStringField(TEXT("type"), Type);
		Match->SetStringField(TEXT("name"), Name);
		Match->SetStringField(TEXT("description"), Description);
		return Match;
	}

	TSharedPtr<FJsonObject> VessaExtensionNotFound(const FString& ExtensionId)
	{
		return MakeTextToolResult(FString::Printf(TEXT("Vessa extension not found: %s"), *ExtensionId), true);
	}

	FString VessaSerializeValue(const TSharedPtr<FJsonValue>& Value)
	{
		FString Text;
		const TSharedRef<TJsonWriter<>> Writer = TJsonWriterFactory<>::Create(&Text);
		if (Value->Type == EJson::Object)
		{
			FJsonSerializer::Serialize(Value->AsObject().ToSharedRef(), Writer);
		}
		else
		{
			FJsonSerializer::Serialize(Value, FString(), Writer);
		}
		return Text;
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeVessaTools::HandleListExtensions(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("vessa_list_extensions"));
	}
	FVessaListParams Params;
	Params.Limit = ZorvekMCPBridgeToolArguments::ReadLimit(Arguments, TEXT("limit"), 100);

	// Every list looks again, so extensions compiled since the last call show up.
	FZorvekMCPBridgeVessaExtensionRegistry& Registry = FZorvekMCPBridgeVessaExtensionRegistry::Get();
	Registry.Refresh(*Context.EditorPort);
	const TArray<FZorvekMCPBridgeVessaRegisteredExtension> Extensions = Registry.GetEnabledExtensions(*Context.EditorPort);
	TArray<TSharedPtr<FJsonValue>> Entries;
	for (const FZorvekMCPBridgeVessaRegisteredExtension& Extension : Extensions)
	{
		if (Entries.Num() >= Params.Limit)
		{
			break;
		}
		Entries.Add(MakeShared<FJsonValueObject>(ZorvekMCPBridgeVessa::GetExtensionDefinitionJson(Extension.Definition)));
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetNumberField(TEXT("count"), Entries.Num());
	Result->SetNumberField(TEXT("total_available"), Extensions.Num());
	Result->SetArrayField(TEXT("extensions"), Entries);
	return MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeVessaTools::HandleSearchExtensions(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("vessa_search_extensions"));
	}
	FVessaSearchParams Params;
	Params.Search = ReadString(Arguments, TEXT("search"), FString());
	Params.Limit = ZorvekMCPBridgeToolArguments::ReadLimit(Arguments, TEXT("limit"), 25);
	TArray<FString> Words;
	Params.Search.ParseIntoArrayWS(Words);
	if (Words.Num() == 0)
	{
		return MakeTextToolResult(TEXT("vessa_search_extensions requires search."), true);
	}

	FZorvekMCPBridgeVessaExtensionRegistry& Registry = FZorvekMCPBridgeVessaExtensionRegistry::Get();
	Registry.Refresh(*Context.EditorPort);
	TArray<TSharedPtr<FJsonValue>> Matches;
	for (const FZorvekMCPBridgeVessaRegisteredExtension& Extension : Registry.GetEnabledExtensions(*Context.EditorPort))
	{
		if (Matches.Num() >= Params.Limit)
		{
			break;
		}
		const FZorvekMCPBridgeVessaDefinitionData& Definition = Extension.Definition;
		const bool bExtensionMatches = VessaMatchesAllWords(Definition.ExtensionId, Words) || VessaMatchesAllWords(Definition.ExtensionName, Words)
			|| VessaMatchesAllWords(Definition.ExtensionDescription, Words);
		TArray<TSharedPtr<FJsonValue>> Capabilities;
		for (const FZorvekMCPBridgeVessaActionInfo& Action : Definition.Actions)
		{
			if (VessaMatchesAllWords(Action.FunctionName, Words) || VessaMatchesAllWords(Action.Description, Words))
			{
				Capabilities.Add(MakeShared<FJsonValueObject>(VessaCapabilityMatch(TEXT("action"), Action.FunctionName, Action.Description)));
			}
		}
		for (const FZorvekMCPBridgeVessaQueryInfo& Query : Definition.Queries)
		{
			if (VessaMatchesAllWords(Query.FunctionName, Words) || VessaMatchesAllWords(Query.Description, Words))
			{
				Capabilities.Add(MakeShared<FJsonValueObject>(VessaCapabilityMatch(TEXT("query"), Query.FunctionName, Query.Description)));
			}
		}
		if (!bExtensionMatches && Capabilities.Num() == 0)
		{
			continue;
		}
		TSharedPtr<FJsonObject> Match = MakeShared<FJsonObject>();
		Match->SetStringField(TEXT("extension_id"), Definition.ExtensionId);
		Match->SetStringField(TEXT("title"), Definition.ExtensionName);
		Match->SetStringField(TEXT("description"), Definition.ExtensionDescription);
		Match->SetArrayField(TEXT("capability_matches"), Capabilities);
		Matches.Add(MakeShared<FJsonValueObject>(Match));
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("search"), Params.Search);
	Result->SetNumberField(TEXT("count"), Matches.Num());
	Result->SetArrayField(TEXT("matches"), Matches);
	return MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeVessaTools::HandleGetExtensionDetails(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("vessa_get_extension_details"));
	}
	const FString ExtensionId = ReadString(Arguments, TEXT("extension_id"), FString());
	if (ExtensionId.IsEmpty())
	{
		return MakeTextToolResult(TEXT("vessa_get_extension_details requires extension_id."), true);
	}
	FZorvekMCPBridgeVessaRegisteredExtension Extension;
	if (!FZorvekMCPBridgeVessaExtensionRegistry::Get().FindExtension(*Context.EditorPort, ExtensionId, Extension))
	{
		return VessaExtensionNotFound(ExtensionId);
	}
	return MakeStructuredToolResult(ZorvekMCPBridgeVessa::GetExtensionDefinitionJson(Extension.Definition), false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeVessaTools::HandleCallQuery(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("vessa_call_query"));
	}
	const FVessaCallParams Params = ReadVessaCallParams(Arguments, TEXT("query_name"));
	if (Params.ExtensionId.IsEmpty() || Params.FunctionName.IsEmpty())
	{
		return MakeTextToolResult(TEXT("vessa_call_query requires extension_id and query_name."), true);
	}
	FZorvekMCPBridgeVessaRegisteredExtension Extension;
	if (!FZorvekMCPBridgeVessaExtensionRegistry::Get().FindExtension(*Context.EditorPort, Params.ExtensionId, Extension))
	{
		return VessaExtensionNotFound(Params.ExtensionId);
	}
	TSharedPtr<FJsonObject> Request = MakeShared<FJsonObject>();
	Request->SetStringField(TEXT("query_name"), Params.FunctionName);
	Request->SetObjectField(TEXT("parameters"), Params.Parameters);
	const TSharedPtr<FJsonValue> Value = ZorvekMCPBridgeVessa::ExecuteQuery(Context.EditorPort->GetFunctions(), Extension.Instance,
		Context.EditorPort->GetObjects().GetClassInfo(Extension.Instance).Path, Extension.Definition, Request);
	if (!Value.IsValid())
	{
		return MakeTextToolResult(TEXT("Vessa query returned no result."), true);
	}
	// A failure inside the query arrives as {"error": ...} in the text, not as a tool error.
	return MakeTextToolResult(VessaSerializeValue(Value), false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeVessaTools::HandleCallAction(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("vessa_call_action"));
	}
	const FVessaCallParams Params = ReadVessaCallParams(Arguments, TEXT("action_name"));
	if (Params.ExtensionId.IsEmpty() || Params.FunctionName.IsEmpty())
	{
		return MakeTextToolResult(TEXT("vessa_call_action requires extension_id and action_name."), true);
	}
	FZorvekMCPBridgeVessaRegisteredExtension Extension;
	if (!FZorvekMCPBridgeVessaExtensionRegistry::Get().FindExtension(*Context.EditorPort, Params.ExtensionId, Extension))
	{
		return VessaExtensionNotFound(Params.ExtensionId);
	}
	TSharedPtr<FJsonObject> Request = MakeShared<FJsonObject>();
	Request->SetStringField(TEXT("action_name"), Params.FunctionName);
	Request->SetObjectField(TEXT("parameters"), Params.Parameters);
	const FZorvekMCPBridgeVessaActionOutcome Outcome = ZorvekMCPBridgeVessa::ExecuteAction(Context.EditorPort->GetFunctions(), Extension.Instance,
		Context.EditorPort->GetObjects().GetClassInfo(Extension.Instance).Path, Extension.Definition, Request);
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetBoolField(TEXT("action_called"), Outcome.bActionCalled);
	Result->SetBoolField(TEXT("success"), Outcome.bSuccess);
	Result->SetBoolField(TEXT("is_async"), Outcome.bIsAsync);
	Result->SetStringField(TEXT("result"), Outcome.Result);
	Result->SetStringField(TEXT("error_message"), Outcome.ErrorMessage);
	return MakeStructuredToolResult(Result, !Outcome.bSuccess);
}
