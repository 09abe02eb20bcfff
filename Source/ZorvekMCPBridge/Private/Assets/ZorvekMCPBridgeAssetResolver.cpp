#include "Assets/ZorvekMCPBridgeAssetResolver.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeAssetRegistryPort.h"
#include "EditorPort/ZorvekMCPBridgeObjectPort.h"

namespace
{
	const TCHAR* const GameRootPath = TEXT("/Game");

	TSharedPtr<FJsonObject> MakeCandidateJson(const FZorvekMCPBridgeAssetData& Asset)
	{
		TSharedPtr<FJsonObject> Candidate = MakeShared<FJsonObject>();
		Candidate->SetStringField(TEXT("asset_path"), Asset.PackageName);
		Candidate->SetStringField(TEXT("object_path"), Asset.ObjectPath);
		Candidate->SetStringField(TEXT("asset_name"), Asset.AssetName);
		Candidate->SetStringField(TEXT("class"), Asset.AssetClassPath);
		return Candidate;
	}

	FString GetStringOrEmpty(const TSharedPtr<FJsonObject>& Object, const TCHAR* FieldName)
	{
		FString Value;
		Object->TryGetStringField(FieldName, Value);
		return Value;
	}

	// Aliases in array order; an element that is not a string counts as an empty alias.
	TArray<FString> GetNormalizedAliases(const TSharedPtr<FJsonObject>& Entry)
	{
		TArray<FString> Aliases;
		const TArray<TSharedPtr<FJsonValue>>* AliasValues = nullptr;
		if (Entry->TryGetArrayField(TEXT("aliases"), AliasValues))
		{
			for (const TSharedPtr<FJsonValue>& AliasValue : *AliasValues)
			{
				FString Alias;
				if (AliasValue.IsValid() && AliasValue->Type == EJson::String)
				{
					AliasValue->TryGetString(Alias);
				}
				Aliases.Add(ZorvekMCPBridgeAssets::NormalizeClassQuery(Alias));
			}
		}
		return Aliases;
	}
}

FString ZorvekMCPBridgeAssets::ObjectPathToPackageName(const FString& ObjectPath)
{
	int32 DotIndex = INDEX_NONE;
	if (ObjectPath.FindChar(TEXT('.'), DotIndex))
	{
		return ObjectPath.Left(DotIndex);
	}
	return ObjectPath;
}

FString ZorvekMCPBridgeAssets::GetShortPackageName(const FString& LongPackageName)
{
	int32 SlashIndex = INDEX_NONE;
	LongPackageName.FindLastChar(TEXT('/'), SlashIndex);
	return LongPackageName.Mid(SlashIndex + 1);
}

FString ZorvekMCPBridgeAssets::MakeAssetObjectPath(const FString& PackagePath)
{
	return FString::Printf(TEXT("%s.%s"), *PackagePath, *GetShortPackageName(PackagePath));
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeAssets::ResolveAssetQuery(const IZorvekMCPBridgeAssetRegistry& Registry, const FString& Query, const FString& Type, int32 Limit, FString& OutBestPath, FString& OutError)
{
	OutBestPath.Reset();
	OutError.Reset();

	TSharedPtr<FJsonObject> Resolution = MakeShared<FJsonObject>();
	Resolution->SetStringField(TEXT("query"), Query);
	Resolution->SetStringField(TEXT("type"), Type);

	// No trimming: a query of blanks is not empty and is searched as it is.
	if (Query.IsEmpty())
	{
		OutError = TEXT("Asset name or path is required.");
		Resolution->SetStringField(TEXT("error"), OutError);
		return Resolution;
	}

	// A path is trusted without asking the registry; the tool that loads it reports a wrong one.
	if (Query.StartsWith(TEXT("/")))
	{
		OutBestPath = Query.Contains(TEXT(".")) ? ObjectPathToPackageName(Query) : Query;
		Resolution->SetStringField(TEXT("best_asset_path"), OutBestPath);
		Resolution->SetArrayField(TEXT("candidates"), TArray<TSharedPtr<FJsonValue>>{MakeShared<FJsonValueString>(OutBestPath)});
		return Resolution;
	}

	FZorvekMCPBridgeAssetFilter Filter;
	Filter.PackagePaths.Add(GameRootPath);
	Filter.bRecursivePaths = true;
	if (Type.Equals(TEXT("Blueprint"), ESearchCase::IgnoreCase))
	{
		// Blueprint itself only: widget and animation Blueprints are subclasses and stay out.
		Filter.ClassPaths.Add(BlueprintClassPath);
		Filter.bRecursiveClasses = false;
	}

	TArray<TSharedPtr<FJsonValue>> Candidates;
	Registry.EnumerateAssets(Filter, [&Candidates, &Query, Limit](const FZorvekMCPBridgeAssetData& Asset)
	{
		if (!Asset.AssetName.Contains(Query, ESearchCase::IgnoreCase) && !Asset.PackageName.Contains(Query, ESearchCase::IgnoreCase))
		{
			return true;
		}
		Candidates.Add(MakeShared<FJsonValueObject>(MakeCandidateJson(Asset)));
		return Candidates.Num() < Limit;
	});

	if (Candidates.IsEmpty())
	{
		OutError = FString::Printf(TEXT("Could not resolve asset from query '%s'."), *Query);
		Resolution->SetStringField(TEXT("error"), OutError);
	}
	else
	{
		OutBestPath = Candidates[0]->AsObject()->GetStringField(TEXT("asset_path"));
		Resolution->SetStringField(TEXT("best_asset_path"), OutBestPath);
	}
	Resolution->SetArrayField(TEXT("candidates"), Candidates);
	Resolution->SetNumberField(TEXT("count"), Candidates.Num());
	return Resolution;
}

void ZorvekMCPBridgeAssets::MakeObjectIdentityJson(const TSharedPtr<FJsonObject>& Target, const IZorvekMCPBridgeObjects& Objects, FZorvekMCPBridgeObjectHandle Object)
{
	if (!Target.IsValid() || !Object.IsValid())
	{
		return;
	}
	const FZorvekMCPBridgeObjectIdentity Identity = Objects.GetIdentity(Object);
	Target->SetStringField(TEXT("object_path"), Identity.ObjectPath);
	Target->SetStringField(TEXT("package_path"), Identity.PackagePath);
	Target->SetStringField(TEXT("name"), Identity.Name);
	Target->SetStringField(TEXT("class_path"), Identity.ClassPath);
	Target->SetStringField(TEXT("class_name"), Identity.ClassName);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeAssets::MakeObjectIdentityJson(const IZorvekMCPBridgeObjects& Objects, FZorvekMCPBridgeObjectHandle Object)
{
	TSharedPtr<FJsonObject> Identity = MakeShared<FJsonObject>();
	MakeObjectIdentityJson(Identity, Objects, Object);
	return Identity;
}

FString ZorvekMCPBridgeAssets::NormalizeClassQuery(const FString& Query)
{
	FString Normalized = Query.TrimStartAndEnd().ToLower();
	// The order matters: "material expression" goes before blanks, "expression" before "node".
	static const TCHAR* const Fillers[] = {
		TEXT("materialexpression"),
		TEXT("material expression"),
		TEXT("expression"),
		TEXT("node"),
		TEXT("_"),
		TEXT("-"),
		TEXT(" ")};
	for (const TCHAR* Filler : Fillers)
	{
		Normalized.ReplaceInline(Filler, TEXT(""), ESearchCase::IgnoreCase);
	}
	return Normalized;
}

int32 ZorvekMCPBridgeAssets::ScoreClassNameMatch(const TSharedPtr<FJsonObject>& Entry, const FString& Query, FString& OutMatchKind)
{
	if (!Entry.IsValid())
	{
		return 0;
	}

	const FString NormalizedQuery = NormalizeClassQuery(Query);
	if (NormalizedQuery.IsEmpty())
	{
		OutMatchKind = TEXT("empty_query");
		return 1;
	}

	const FString ClassName = GetStringOrEmpty(Entry, TEXT("class_name"));
	const FString NormalizedClassName = NormalizeClassQuery(ClassName);
	const FString NormalizedDisplayName = NormalizeClassQuery(GetStringOrEmpty(Entry, TEXT("display_name")));
	const TArray<FString> NormalizedAliases = GetNormalizedAliases(Entry);

	// Tested in this order on purpose; the order is not the order of the scores.
	if (ClassName.Equals(Query, ESearchCase::IgnoreCase))
	{
		OutMatchKind = TEXT("exact_canonical_class");
		return 100;
	}
	if (NormalizedClassName.Equals(NormalizedQuery))
	{
		OutMatchKind = TEXT("normalized_canonical_class");
		return 98;
	}
	if (NormalizedDisplayName.Equals(NormalizedQuery))
	{
		OutMatchKind = TEXT("display_name_exact");
		return 92;
	}
	for (const FString& Alias : NormalizedAliases)
	{
		if (Alias.Equals(NormalizedQuery))
		{
			OutMatchKind = TEXT("alias_exact");
			return 94;
		}
	}
	if (NormalizedClassName.Contains(NormalizedQuery) || NormalizedDisplayName.Contains(NormalizedQuery))
	{
		OutMatchKind = TEXT("substring_match");
		return 55;
	}
	for (const FString& Alias : NormalizedAliases)
	{
		if (Alias.Contains(NormalizedQuery))
		{
			OutMatchKind = TEXT("alias_substring_match");
			return 58;
		}
	}
	OutMatchKind = TEXT("no_match");
	return 0;
}
