#include "Tools/ZorvekMCPBridgeBlueprintSearchTool.h"

#include "Blueprint/ZorvekMCPBridgeBlueprintProjectSearch.h"
#include "Dom/JsonValue.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

namespace
{
	namespace ProjectSearch = ZorvekMCPBridgeBlueprintProjectSearch;

	// A list argument: an array of texts, or one text whose items are separated by commas. Absent
	// or null gives an empty list; any other JSON form, or an array holding anything but text, is
	// refused.
	bool ReadSearchToolList(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, TArray<FString>& OutItems)
	{
		const TSharedPtr<FJsonValue> Value = Arguments.IsValid() ? Arguments->TryGetField(Key) : nullptr;
		if (!Value.IsValid() || Value->Type == EJson::Null)
		{
			return true;
		}
		if (Value->Type == EJson::String)
		{
			TArray<FString> Items;
			Value->AsString().ParseIntoArray(Items, TEXT(","), true);
			for (const FString& Item : Items)
			{
				if (!Item.TrimStartAndEnd().IsEmpty())
				{
					OutItems.Add(Item.TrimStartAndEnd());
				}
			}
			return true;
		}
		if (Value->Type != EJson::Array)
		{
			return false;
		}
		for (const TSharedPtr<FJsonValue>& Item : Value->AsArray())
		{
			if (!Item.IsValid() || Item->Type != EJson::String)
			{
				return false;
			}
			if (!Item->AsString().TrimStartAndEnd().IsEmpty())
			{
				OutItems.Add(Item->AsString().TrimStartAndEnd());
			}
		}
		return true;
	}

	// Reads and checks every argument before the search touches the editor; false with the
	// message for the first bad one.
	bool ReadSearchToolParams(const TSharedPtr<FJsonObject>& Arguments, ProjectSearch::FSearchParams& OutParams, FString& OutError)
	{
		const TSharedPtr<FJsonValue> QueryValue = Arguments.IsValid() ? Arguments->TryGetField(TEXT("Query")) : nullptr;
		if (QueryValue.IsValid() && (QueryValue->Type == EJson::Array || QueryValue->Type == EJson::Object))
		{
			OutError = TEXT("Query must be text: the words to find, for example print string or BP_Hero.");
			return false;
		}
		OutParams.Query = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("Query"), FString()).TrimStartAndEnd();
		if (OutParams.Query.IsEmpty())
		{
			OutError = TEXT("blueprint_search_project requires Query.");
			return false;
		}
		OutParams.ParsedQuery = ProjectSearch::FSearchQuery::Parse(OutParams.Query);
		if (OutParams.ParsedQuery.IsEmpty())
		{
			OutError = FString::Printf(TEXT("Query '%s' holds no letters or digits to search for."), *OutParams.Query);
			return false;
		}

		TArray<FString> PackagePaths;
		if (!ReadSearchToolList(Arguments, TEXT("PackagePaths"), PackagePaths))
		{
			OutError = TEXT("PackagePaths must be an array of content folders or one folder text, for example [\"/Game/Blueprints\"].");
			return false;
		}
		if (PackagePaths.IsEmpty())
		{
			PackagePaths.Add(ProjectSearch::DefaultPackagePath);
		}
		for (const FString& PackagePath : PackagePaths)
		{
			FString Normalized;
			if (!ProjectSearch::NormalizeSearchPackagePath(PackagePath, Normalized, OutError))
			{
				return false;
			}
			OutParams.PackagePaths.AddUnique(Normalized);
		}

		TArray<FString> TypeWords;
		if (!ReadSearchToolList(Arguments, TEXT("Types"), TypeWords))
		{
			OutError = FString::Printf(TEXT("Types must be an array of type words or one comma-separated text of them: %s."), *ProjectSearch::GetSearchTypeWordList());
			return false;
		}
		if (!ProjectSearch::ParseSearchTypes(TypeWords, OutParams.TypeMask, OutError))
		{
			return false;
		}

		OutParams.Limit = FMath::Min(ZorvekMCPBridgeToolArguments::ReadLimit(Arguments, TEXT("Limit"), ProjectSearch::DefaultLimit), ProjectSearch::MaxLimit);
		OutParams.MaxBlueprints = ZorvekMCPBridgeToolArguments::ReadLimit(Arguments, TEXT("MaxBlueprints"), ProjectSearch::DefaultMaxBlueprints);
		return true;
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintSearchTool::HandleSearchProject(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("blueprint_search_project"));
	}
	ProjectSearch::FSearchParams Params;
	FString Error;
	if (!ReadSearchToolParams(Arguments, Params, Error))
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(Error, true);
	}
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(ZorvekMCPBridgeBlueprintProjectSearch::SearchProject(*Context.EditorPort, Params), false);
}
