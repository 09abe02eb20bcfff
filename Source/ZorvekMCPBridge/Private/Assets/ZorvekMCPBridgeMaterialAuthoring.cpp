#include "Assets/ZorvekMCPBridgeMaterialAuthoring.h"

#include "Assets/ZorvekMCPBridgeAssetReaders.h"
#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	struct FMaterialExpressionClassRow
	{
		const TCHAR* ClassName;
		// Null: the class name without its "MaterialExpression" prefix.
		const TCHAR* DisplayName;
		const TCHAR* Alias;
		bool bSupported;
	};

	// Catalogue order; the first 16 rows are what material_add_expression creates.
	const FMaterialExpressionClassRow MaterialExpressionClassRows[] = {
		{TEXT("MaterialExpressionScalarParameter"), nullptr, nullptr, true},
		{TEXT("MaterialExpressionVectorParameter"), nullptr, nullptr, true},
		{TEXT("MaterialExpressionTextureSampleParameter2D"), TEXT("Texture Sample Parameter 2D"), TEXT("Texture Parameter"), true},
		{TEXT("MaterialExpressionMultiply"), nullptr, nullptr, true},
		{TEXT("MaterialExpressionAdd"), nullptr, nullptr, true},
		{TEXT("MaterialExpressionLinearInterpolate"), TEXT("Linear Interpolate"), TEXT("Lerp"), true},
		{TEXT("MaterialExpressionClamp"), nullptr, nullptr, true},
		{TEXT("MaterialExpressionOneMinus"), nullptr, nullptr, true},
		{TEXT("MaterialExpressionSaturate"), nullptr, nullptr, true},
		{TEXT("MaterialExpressionTextureCoordinate"), TEXT("Texture Coordinate"), TEXT("TexCoord"), true},
		{TEXT("MaterialExpressionTime"), nullptr, nullptr, true},
		{TEXT("MaterialExpressionPanner"), nullptr, nullptr, true},
		{TEXT("MaterialExpressionComponentMask"), TEXT("Component Mask"), TEXT("Mask"), true},
		{TEXT("MaterialExpressionAppendVector"), TEXT("Append Vector"), TEXT("Append"), true},
		{TEXT("MaterialExpressionPower"), nullptr, nullptr, true},
		{TEXT("MaterialExpressionStaticSwitchParameter"), TEXT("Static Switch Parameter"), TEXT("Static Switch"), true},
		{TEXT("MaterialExpressionMaterialFunctionCall"), TEXT("Material Function Call"), TEXT("Function Call"), false},
		{TEXT("MaterialExpressionNoise"), nullptr, nullptr, false},
		{TEXT("MaterialExpressionFresnel"), nullptr, nullptr, false}};

	const TCHAR* const MaterialPowerClassName = TEXT("MaterialExpressionPower");
	const TCHAR* const MaterialClassSupportedReason = TEXT("Supported by material_add_expression allowlist and covered by material authoring smoke tests.");
	const TCHAR* const MaterialClassUnsupportedReason = TEXT("Discoverable but not currently supported for material_add_expression mutation.");

	TSharedPtr<FJsonObject> MakeMaterialCatalogueEntry(const IZorvekMCPBridgeObjects& Objects, const FMaterialExpressionClassRow& Row)
	{
		const FString ClassName = Row.ClassName;
		FString DisplayName = Row.DisplayName ? FString(Row.DisplayName) : ClassName;
		if (!Row.DisplayName)
		{
			DisplayName.RemoveFromStart(TEXT("MaterialExpression"), ESearchCase::CaseSensitive);
		}
		TArray<TSharedPtr<FJsonValue>> Aliases;
		if (Row.Alias)
		{
			Aliases.Add(MakeShared<FJsonValueString>(Row.Alias));
		}
		FZorvekMCPBridgeTypeInfo Class;
		const bool bLoaded = Objects.FindType(EZorvekMCPBridgeTypeKind::Class, ZorvekMCPBridgeMaterialAuthoring::MakeExpressionClassPath(ClassName), Class);

		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("class_name"), ClassName);
		Entry->SetStringField(TEXT("canonical_class"), ClassName);
		Entry->SetStringField(TEXT("class_path"), ZorvekMCPBridgeMaterialAuthoring::MakeExpressionClassPath(ClassName));
		Entry->SetStringField(TEXT("display_name"), DisplayName);
		Entry->SetArrayField(TEXT("aliases"), Aliases);
		Entry->SetBoolField(TEXT("supported_for_authoring"), Row.bSupported);
		Entry->SetStringField(TEXT("support_reason"), Row.bSupported ? MaterialClassSupportedReason : MaterialClassUnsupportedReason);
		Entry->SetBoolField(TEXT("abstract"), bLoaded && (Class.ClassFlags & ZorvekMCPBridgeClassFlags::Abstract) != 0);
		Entry->SetBoolField(TEXT("deprecated"), bLoaded && (Class.ClassFlags & ZorvekMCPBridgeClassFlags::Deprecated) != 0);
		return Entry;
	}

	struct FScoredMaterialClass
	{
		TSharedPtr<FJsonObject> Entry;
		int32 Score = 0;
		bool bSupported = false;
		FString ClassName;
	};

	// Highest score first; on equal scores supported classes first; then by class name.
	void SortScoredMaterialClasses(TArray<FScoredMaterialClass>& Classes)
	{
		Classes.StableSort([](const FScoredMaterialClass& Left, const FScoredMaterialClass& Right)
		{
			if (Left.Score != Right.Score)
			{
				return Left.Score > Right.Score;
			}
			if (Left.bSupported != Right.bSupported)
			{
				return Left.bSupported;
			}
			return Left.ClassName.Compare(Right.ClassName, ESearchCase::CaseSensitive) < 0;
		});
	}

	// Every catalogue entry with a positive score against the query, "score" and "match_reason"
	// added; unsupported entries dropped when asked.
	TArray<FScoredMaterialClass> ScoreMaterialCatalogue(const IZorvekMCPBridgeObjects& Objects, const FString& Query, bool bSupportedOnly)
	{
		TArray<FScoredMaterialClass> Scored;
		for (const TSharedPtr<FJsonObject>& Entry : ZorvekMCPBridgeMaterialAuthoring::BuildExpressionClassCatalogue(Objects))
		{
			FString MatchKind;
			const int32 Score = ZorvekMCPBridgeAssets::ScoreClassNameMatch(Entry, Query, MatchKind);
			const bool bSupported = Entry->GetBoolField(TEXT("supported_for_authoring"));
			if (Score <= 0 || (bSupportedOnly && !bSupported))
			{
				continue;
			}
			Entry->SetNumberField(TEXT("score"), Score);
			Entry->SetStringField(TEXT("match_reason"), MatchKind);
			Scored.Add({Entry, Score, bSupported, Entry->GetStringField(TEXT("class_name"))});
		}
		SortScoredMaterialClasses(Scored);
		return Scored;
	}
}

FString ZorvekMCPBridgeMaterialAuthoring::MakeExpressionClassPath(const FString& ClassName)
{
	return FString::Printf(TEXT("/Script/Engine.%s"), *ClassName);
}

TArray<TSharedPtr<FJsonObject>> ZorvekMCPBridgeMaterialAuthoring::BuildExpressionClassCatalogue(const IZorvekMCPBridgeObjects& Objects)
{
	TArray<TSharedPtr<FJsonObject>> Catalogue;
	for (const FMaterialExpressionClassRow& Row : MaterialExpressionClassRows)
	{
		Catalogue.Add(MakeMaterialCatalogueEntry(Objects, Row));
	}
	return Catalogue;
}

bool ZorvekMCPBridgeMaterialAuthoring::IsAllowlistedExpressionClass(const FString& ClassName)
{
	for (const FMaterialExpressionClassRow& Row : MaterialExpressionClassRows)
	{
		if (Row.bSupported && ClassName.Equals(Row.ClassName, ESearchCase::CaseSensitive))
		{
			return true;
		}
	}
	return false;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialAuthoring::FindExpressionClasses(const IZorvekMCPBridgeObjects& Objects, const FString& Query, bool bSupportedOnly, int32 Limit)
{
	TArray<FScoredMaterialClass> Found;
	if (Query.IsEmpty())
	{
		for (const TSharedPtr<FJsonObject>& Entry : BuildExpressionClassCatalogue(Objects))
		{
			const bool bSupported = Entry->GetBoolField(TEXT("supported_for_authoring"));
			if (bSupportedOnly && !bSupported)
			{
				continue;
			}
			Entry->SetStringField(TEXT("match_reason"), TEXT("listed"));
			Found.Add({Entry, 0, bSupported, Entry->GetStringField(TEXT("class_name"))});
		}
		SortScoredMaterialClasses(Found);
	}
	else
	{
		Found = ScoreMaterialCatalogue(Objects, Query, bSupportedOnly);
	}

	TArray<TSharedPtr<FJsonValue>> Classes;
	for (int32 Index = 0; Index < Found.Num() && Index < Limit; ++Index)
	{
		Classes.Add(MakeShared<FJsonValueObject>(Found[Index].Entry));
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("query"), Query);
	Result->SetBoolField(TEXT("supported_only"), bSupportedOnly);
	Result->SetNumberField(TEXT("total_catalog_count"), UE_ARRAY_COUNT(MaterialExpressionClassRows));
	Result->SetNumberField(TEXT("result_count"), Classes.Num());
	Result->SetArrayField(TEXT("classes"), Classes);
	return Result;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialAuthoring::ResolveExpressionClass(const IZorvekMCPBridgeObjects& Objects, const FString& Query, bool bRequireSupported)
{
	const TArray<FScoredMaterialClass> Candidates = ScoreMaterialCatalogue(Objects, Query, bRequireSupported);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("query"), Query);
	Result->SetBoolField(TEXT("require_supported"), bRequireSupported);
	Result->SetNumberField(TEXT("candidate_count"), Candidates.Num());
	TArray<TSharedPtr<FJsonValue>> CandidateValues;
	for (int32 Index = 0; Index < Candidates.Num() && Index < MaxResolveCandidates; ++Index)
	{
		CandidateValues.Add(MakeShared<FJsonValueObject>(Candidates[Index].Entry));
	}
	Result->SetArrayField(TEXT("candidates"), CandidateValues);

	const TCHAR* const NoBestStep = TEXT("Inspect candidates and use an exact canonical supported class, or expand the allowlist in a later slice.");
	if (Candidates.IsEmpty())
	{
		Result->SetStringField(TEXT("confidence"), TEXT("none"));
		Result->SetStringField(TEXT("rejected_reason"), TEXT("no_candidates"));
		Result->SetStringField(TEXT("next_step"), NoBestStep);
		return Result;
	}
	const FScoredMaterialClass& Top = Candidates[0];
	const bool bTied = Candidates.Num() > 1 && Candidates[1].Score == Top.Score;
	if (Top.Score < 90 || bTied)
	{
		Result->SetStringField(TEXT("confidence"), Top.Score < 55 ? TEXT("none") : TEXT("low"));
		Result->SetStringField(TEXT("rejected_reason"), bTied ? TEXT("ambiguous_equal_score_candidates") : TEXT("no_high_confidence_candidate"));
		Result->SetStringField(TEXT("next_step"), NoBestStep);
		return Result;
	}
	Result->SetObjectField(TEXT("best"), Top.Entry);
	Result->SetStringField(TEXT("canonical_class"), Top.ClassName);
	Result->SetStringField(TEXT("confidence"), Top.bSupported ? TEXT("high") : TEXT("high_unsupported"));
	Result->SetStringField(TEXT("next_step"), Top.bSupported
		? TEXT("Use canonical_class as ExpressionClass with material_add_expression.")
		: TEXT("This class is discoverable but not supported by material_add_expression yet."));
	return Result;
}

const TArray<FString>& ZorvekMCPBridgeMaterialAuthoring::GetAuthorableRootInputs()
{
	static const TArray<FString> RootInputs = {TEXT("BaseColor"), TEXT("Roughness"), TEXT("EmissiveColor"), TEXT("Normal"), TEXT("Metallic"), TEXT("Specular"), TEXT("Opacity")};
	return RootInputs;
}

bool ZorvekMCPBridgeMaterialAuthoring::IsAuthorableRootInput(const FString& RootInputName)
{
	for (const FString& Name : GetAuthorableRootInputs())
	{
		if (Name.Equals(RootInputName, ESearchCase::CaseSensitive))
		{
			return true;
		}
	}
	return false;
}

FString ZorvekMCPBridgeMaterialAuthoring::ApplySetPropertyAlias(const FString& ClassName, const FString& PropertyName, FString& OutAlias)
{
	OutAlias.Reset();
	if (ClassName.Equals(MaterialPowerClassName, ESearchCase::CaseSensitive) && PropertyName.Equals(TEXT("Exponent"), ESearchCase::CaseSensitive))
	{
		OutAlias = TEXT("Exponent->ConstExponent");
		return TEXT("ConstExponent");
	}
	return PropertyName;
}

FString ZorvekMCPBridgeMaterialAuthoring::GetDefaultValueProperty(const FString& ClassName, FString& OutAlias)
{
	OutAlias.Reset();
	if (ClassName.Equals(MaterialPowerClassName, ESearchCase::CaseSensitive))
	{
		OutAlias = TEXT("DefaultValue->ConstExponent");
		return TEXT("ConstExponent");
	}
	return TEXT("DefaultValue");
}

const FZorvekMCPBridgeMaterialExpressionSnapshot* ZorvekMCPBridgeMaterialAuthoring::FindExpressionByGuid(const FZorvekMCPBridgeMaterialSnapshot& Snapshot, const FString& Guid)
{
	const FString Wanted = Guid.TrimStartAndEnd();
	if (Wanted.IsEmpty())
	{
		return nullptr;
	}
	for (const FZorvekMCPBridgeMaterialExpressionSnapshot& Expression : Snapshot.Expressions)
	{
		if (Expression.NodeGuid.Equals(Wanted, ESearchCase::IgnoreCase))
		{
			return &Expression;
		}
	}
	return nullptr;
}

int32 ZorvekMCPBridgeMaterialAuthoring::FindInputIndex(const FZorvekMCPBridgeMaterialExpressionSnapshot& Expression, const FString& InputName)
{
	for (int32 Index = 0; Index < Expression.Inputs.Num(); ++Index)
	{
		if (Expression.Inputs[Index].InputName.Equals(InputName, ESearchCase::CaseSensitive))
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

FString ZorvekMCPBridgeMaterialAuthoring::DescribeAvailableInputs(const FZorvekMCPBridgeMaterialExpressionSnapshot& Expression)
{
	if (Expression.Inputs.IsEmpty())
	{
		return TEXT("(none)");
	}
	TArray<FString> Names;
	for (const FZorvekMCPBridgeMaterialInputSnapshot& Input : Expression.Inputs)
	{
		Names.Add(FString::Printf(TEXT("'%s'"), *Input.InputName));
	}
	return FString::Join(Names, TEXT(", "));
}

FZorvekMCPBridgeObjectHandle ZorvekMCPBridgeMaterialAuthoring::LoadMaterial(IZorvekMCPBridgeEditorPort& Port, const FString& MaterialNameOrPath, FString& OutAssetPath)
{
	FString Error;
	ZorvekMCPBridgeAssets::ResolveAssetQuery(Port.GetAssetRegistry(), MaterialNameOrPath, TEXT("Material"), ZorvekMCPBridgeAssets::DefaultResolveLimit, OutAssetPath, Error);
	if (OutAssetPath.IsEmpty())
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	const FZorvekMCPBridgeObjectHandle Material = Port.GetObjects().LoadObject(ZorvekMCPBridgeAssets::MakeAssetObjectPath(OutAssetPath));
	return Port.GetObjects().IsA(Material, MaterialClassPath) ? Material : FZorvekMCPBridgeObjectHandle();
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialAuthoring::ReadMaterialObject(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Material)
{
	TArray<TSharedPtr<FJsonValue>> PartialFailures;
	TSharedPtr<FJsonObject> Reader = ZorvekMCPBridgeAssets::ReadMaterialAsset(Port, Material, PartialFailures);
	Reader->SetArrayField(TEXT("partial_failures"), PartialFailures);
	return Reader;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeMaterialAuthoring::ReadExpressionNode(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Material, const FString& NodeGuid)
{
	const TSharedPtr<FJsonObject> Reader = ReadMaterialObject(Port, Material);
	const TArray<TSharedPtr<FJsonValue>>* Expressions = nullptr;
	if (!Reader->TryGetArrayField(TEXT("expressions"), Expressions))
	{
		return nullptr;
	}
	for (const TSharedPtr<FJsonValue>& Value : *Expressions)
	{
		const TSharedPtr<FJsonObject>& Node = Value->AsObject();
		FString Guid;
		if (Node.IsValid() && Node->TryGetStringField(TEXT("node_guid"), Guid) && Guid.Equals(NodeGuid, ESearchCase::IgnoreCase))
		{
			return Node;
		}
	}
	return nullptr;
}

bool ZorvekMCPBridgeMaterialAuthoring::ImportPropertyTextOrRestore(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const FString& PropertyName, const FString& ValueText, FString& OutError)
{
	const FZorvekMCPBridgePropertyCursor Property = Port.GetReflection().FindProperty(Object, PropertyName);
	FString OldText;
	const bool bHasOldText = Property.IsValid() && Property.ExportText(OldText);
	if (ZorvekMCPBridgeAssets::ImportPropertyText(Port, Object, PropertyName, ValueText, OutError))
	{
		return true;
	}
	// The engine writes a struct or array as it reads, so a failure halfway keeps half a value.
	if (bHasOldText)
	{
		Port.GetReflection().ImportText(Property, OldText);
	}
	return false;
}
