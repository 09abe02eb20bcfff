// The flat and the recursive property export, and text import, over the sample project's loot
// table: a data asset whose properties cover every flag combination the filter tells apart,
// nested structs four levels deep, long arrays and a struct of 61 fields.
#include "AssetTestSupport.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"

using namespace ZorvekAssetTests;
using namespace ZorvekMCPBridgeAssets;

namespace
{
	const TCHAR* const LootTablePath = TEXT("/Game/Data/DA_LootTable.DA_LootTable");

	class PropertyExportTest : public ::testing::Test
	{
	protected:
		TSharedPtr<FJsonObject> Export(int32 Limit)
		{
			References.Reset();
			Failures.Reset();
			return ExportObjectProperties(*Port, LootTable, Limit, References, Failures);
		}

		FZorvekMCPBridgePropertyCursor Property(const TCHAR* Name) const
		{
			return Port->GetReflection().FindProperty(LootTable, Name);
		}

		static std::vector<std::string> Keys(const TSharedPtr<FJsonObject>& Object)
		{
			TArray<FString> Names;
			Object->Values.GetKeys(Names);
			return ToStd(Names);
		}

		std::vector<std::string> FailureStages() const
		{
			return ToStd(Collect(Failures, TEXT("stage")));
		}

		TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
		FZorvekMCPBridgeObjectHandle LootTable = FindObject(*Port, LootTablePath);
		TArray<TSharedPtr<FJsonValue>> References;
		TArray<TSharedPtr<FJsonValue>> Failures;
	};

	const std::vector<std::string> QualifyingProperties = {"TableName", "Summary", "Drops", "DropWeights", "Tiers", "StatBlock", "BonusIcon",
		"FallbackTable", "SearchKey", "PreviewCache", "NativeClass"};
}

TEST_F(PropertyExportTest, KeepsInspectablePropertiesInFieldOrderAndSkipsTheRest)
{
	// Left out: DesignerNotes (editable but transient), LegacyRarity (deprecated), DefaultsOnlyCap
	// (edit on defaults only), InternalSeed (no inspectable flag). The class's own properties come
	// before those of its super classes (NativeClass, from DataAsset).
	const TSharedPtr<FJsonObject> Properties = Export(0);
	EXPECT_EQ(Keys(Properties), QualifyingProperties);

	const TSharedPtr<FJsonObject> TableName = Properties->GetObjectField(TEXT("TableName"));
	EXPECT_EQ(S(TableName->GetStringField(TEXT("name"))), "TableName");
	EXPECT_EQ(S(TableName->GetStringField(TEXT("cpp_type"))), "FName");
	EXPECT_EQ(S(TableName->GetStringField(TEXT("value"))), "ForestLoot");
	EXPECT_TRUE(TableName->GetBoolField(TEXT("editable")));
	EXPECT_TRUE(TableName->GetBoolField(TEXT("blueprint_visible")));
	EXPECT_TRUE(TableName->GetBoolField(TEXT("blueprint_read_only")));
	EXPECT_TRUE(TableName->GetBoolField(TEXT("asset_registry_searchable")));

	// Registry-searchable is enough on its own.
	const TSharedPtr<FJsonObject> SearchKey = Properties->GetObjectField(TEXT("SearchKey"));
	EXPECT_FALSE(SearchKey->GetBoolField(TEXT("editable")));
	EXPECT_TRUE(SearchKey->GetBoolField(TEXT("asset_registry_searchable")));

	EXPECT_EQ(S(Properties->GetObjectField(TEXT("Drops"))->GetStringField(TEXT("cpp_type"))), "TArray");
	EXPECT_EQ(S(Properties->GetObjectField(TEXT("BonusIcon"))->GetStringField(TEXT("cpp_type"))), "TObjectPtr<UTexture2D>");
	EXPECT_EQ(S(Properties->GetObjectField(TEXT("Summary"))->GetStringField(TEXT("cpp_type"))), "FLootSummary");
}

TEST_F(PropertyExportTest, ExportRefusalIsRecordedAndTheEntryKept)
{
	const TSharedPtr<FJsonObject> Properties = Export(0);
	const TSharedPtr<FJsonObject> PreviewCache = Properties->GetObjectField(TEXT("PreviewCache"));
	EXPECT_FALSE(PreviewCache->HasField(TEXT("value")));
	ASSERT_EQ(Failures.Num(), 1);
	const TSharedPtr<FJsonObject> Failure = Failures[0]->AsObject();
	EXPECT_EQ(S(Failure->GetStringField(TEXT("stage"))), "property_export");
	EXPECT_EQ(S(Failure->GetStringField(TEXT("property"))), "PreviewCache");
	EXPECT_EQ(S(Failure->GetStringField(TEXT("reason"))), "ExportText_InContainer returned false.");
	// The export went on past the refusal.
	EXPECT_TRUE(Properties->HasField(TEXT("NativeClass")));
}

TEST_F(PropertyExportTest, LimitNoteOnlyWhenAFurtherPropertyExists)
{
	const int32 QualifyingCount = (int32)QualifyingProperties.size();
	for (const int32 Limit : {0, -3, QualifyingCount, QualifyingCount + 5})
	{
		EXPECT_EQ((int32)Keys(Export(Limit)).size(), QualifyingCount) << Limit;
		EXPECT_EQ(FailureStages(), (std::vector<std::string>{"property_export"})) << Limit;
	}

	const TSharedPtr<FJsonObject> Limited = Export(QualifyingCount - 1);
	EXPECT_EQ((int32)Keys(Limited).size(), QualifyingCount - 1);
	EXPECT_FALSE(Limited->HasField(TEXT("NativeClass")));
	ASSERT_EQ(FailureStages(), (std::vector<std::string>{"property_export", "properties"}));
	EXPECT_EQ(S(Failures[1]->AsObject()->GetStringField(TEXT("reason"))), "Property limit 10 reached.");
	EXPECT_FALSE(Failures[1]->AsObject()->HasField(TEXT("property")));

	EXPECT_EQ(Keys(Export(1)), (std::vector<std::string>{"TableName"}));
	EXPECT_EQ(FailureStages(), (std::vector<std::string>{"properties"}));
}

TEST_F(PropertyExportTest, ObjectReferencesCarryTheReferencedIdentity)
{
	const TSharedPtr<FJsonObject> Properties = Export(0);
	// Null references export "None" and no reference.
	const TSharedPtr<FJsonObject> BonusIcon = Properties->GetObjectField(TEXT("BonusIcon"));
	EXPECT_EQ(S(BonusIcon->GetStringField(TEXT("value"))), "None");
	EXPECT_FALSE(BonusIcon->HasField(TEXT("reference")));

	ASSERT_EQ(References.Num(), 1);
	const TSharedPtr<FJsonObject> Reference = References[0]->AsObject();
	EXPECT_EQ(S(Reference->GetStringField(TEXT("object_path"))), "/Script/SampleGame.LootTableDataAsset");
	EXPECT_EQ(S(Reference->GetStringField(TEXT("package_path"))), "/Script/SampleGame");
	EXPECT_EQ(S(Reference->GetStringField(TEXT("name"))), "LootTableDataAsset");
	EXPECT_EQ(S(Reference->GetStringField(TEXT("class_path"))), "/Script/CoreUObject.Class");
	EXPECT_EQ(S(Reference->GetStringField(TEXT("class_name"))), "Class");
	EXPECT_EQ(S(Reference->GetStringField(TEXT("property"))), "NativeClass");
	const TSharedPtr<FJsonObject> NativeClass = Properties->GetObjectField(TEXT("NativeClass"));
	EXPECT_EQ(S(NativeClass->GetStringField(TEXT("value"))), "/Script/CoreUObject.Class'/Script/SampleGame.LootTableDataAsset'");
	EXPECT_EQ(S(NativeClass->GetObjectField(TEXT("reference"))->GetStringField(TEXT("property"))), "NativeClass");
}

TEST_F(PropertyExportTest, ArraysExportFiftyItemsAndTheFullCount)
{
	const TSharedPtr<FJsonObject> Drops = ExportPropertyValueJson(*Port, Property(TEXT("Drops")), 0, MaxExportedStructDepth);
	EXPECT_EQ(S(Drops->GetStringField(TEXT("element_cpp_type"))), "FLootDrop");
	EXPECT_EQ(Drops->GetIntegerField(TEXT("count")), 64);
	EXPECT_EQ(Drops->GetIntegerField(TEXT("truncated_after")), 50);
	const TArray<TSharedPtr<FJsonValue>>& Items = Drops->GetArrayField(TEXT("items"));
	ASSERT_EQ(Items.Num(), 50);
	const TSharedPtr<FJsonObject> Last = Items[49]->AsObject();
	EXPECT_EQ(Last->GetIntegerField(TEXT("index")), 49);
	EXPECT_EQ(S(Last->GetStringField(TEXT("value"))), "(ItemName=\"Item_49\",Weight=25.500000,Quantity=5)");
	EXPECT_EQ(S(Last->GetObjectField(TEXT("struct"))->GetStringField(TEXT("struct_path"))), "/Script/SampleGame.LootDrop");

	FString Error;
	const auto CountAndTruncation = [this, &Error](int32 Elements)
	{
		TArray<FString> Weights;
		for (int32 Index = 0; Index < Elements; ++Index)
		{
			Weights.Add(FString::Printf(TEXT("%d"), Index));
		}
		EXPECT_TRUE(ImportPropertyText(*Port, LootTable, TEXT("DropWeights"), TEXT("(") + FString::Join(Weights, TEXT(",")) + TEXT(")"), Error)) << S(Error);
		return ExportPropertyValueJson(*Port, Property(TEXT("DropWeights")), 0, MaxExportedStructDepth);
	};
	const TSharedPtr<FJsonObject> Fifty = CountAndTruncation(50);
	EXPECT_EQ(Fifty->GetArrayField(TEXT("items")).Num(), 50);
	EXPECT_FALSE(Fifty->HasField(TEXT("truncated_after")));
	const TSharedPtr<FJsonObject> FiftyOne = CountAndTruncation(51);
	EXPECT_EQ(FiftyOne->GetArrayField(TEXT("items")).Num(), 50);
	EXPECT_EQ(FiftyOne->GetIntegerField(TEXT("count")), 51);
	EXPECT_EQ(FiftyOne->GetIntegerField(TEXT("truncated_after")), 50);
	const TSharedPtr<FJsonObject> Empty = CountAndTruncation(0);
	EXPECT_EQ(Empty->GetIntegerField(TEXT("count")), 0);
	EXPECT_TRUE(Empty->GetArrayField(TEXT("items")).IsEmpty());
}

TEST_F(PropertyExportTest, StructsStopAtSixtyFieldsAndSkipTransientAndDeprecatedFields)
{
	const TSharedPtr<FJsonObject> Stats = ExportStructJson(*Port, Property(TEXT("StatBlock")), 0, MaxExportedStructDepth);
	EXPECT_EQ(S(Stats->GetStringField(TEXT("struct_name"))), "LootStatBlock");
	EXPECT_EQ(Stats->GetIntegerField(TEXT("field_count")), 60);
	EXPECT_TRUE(Stats->GetBoolField(TEXT("truncated")));
	EXPECT_EQ(S(Stats->GetArrayField(TEXT("fields")).Last()->AsObject()->GetStringField(TEXT("name"))), "Stat59");

	// CachedScore is transient and LegacyCode deprecated.
	const TSharedPtr<FJsonObject> Summary = ExportStructJson(*Port, Property(TEXT("Summary")), 0, MaxExportedStructDepth);
	EXPECT_EQ(ToStd(Collect(Summary->GetArrayField(TEXT("fields")), TEXT("name"))), (std::vector<std::string>{"DisplayName", "Value", "Icon", "Tint"}));
	EXPECT_FALSE(Summary->HasField(TEXT("truncated")));
	const TSharedPtr<FJsonObject> Icon = Summary->GetArrayField(TEXT("fields"))[2]->AsObject();
	EXPECT_EQ(S(Icon->GetStringField(TEXT("value"))), "/Game/Textures/T_M_Rock_D.T_M_Rock_D");
	EXPECT_EQ(S(Icon->GetObjectField(TEXT("reference"))->GetStringField(TEXT("class_name"))), "Texture2D");
	EXPECT_EQ(S(ExportPropertyValueJson(*Port, Property(TEXT("BonusIcon")), 0, 4)->GetStringField(TEXT("value"))), "None");
	EXPECT_FALSE(ExportPropertyValueJson(*Port, Property(TEXT("BonusIcon")), 0, 4)->HasField(TEXT("reference")));
}

TEST(PropertyExport, StructOfExactlySixtyFieldsIsMarkedTruncated)
{
	FString Fields;
	FString Values;
	for (int32 Index = 0; Index < 60; ++Index)
	{
		Fields += FString::Printf(TEXT("%s{\"name\": \"F%d\", \"type\": \"int32\"}"), Index ? TEXT(",") : TEXT(""), Index);
	}
	const TSharedPtr<FSimulatedEditorPort> Port = LoadInlineProject(FString::Printf(TEXT(
		"\"structs\": [{\"path\": \"/Script/Test.Sixty\", \"properties\": [%s]}],"
		"\"classes\": [{\"path\": \"/Script/Test.Holder\", \"properties\": [{\"name\": \"Block\", \"type\": \"struct:/Script/Test.Sixty\", \"flags\": [\"EditAnywhere\"]}]}],"
		"\"assets\": [{\"package\": \"/Game/Holder\", \"class\": \"/Script/Test.Holder\"}]"), *Fields));
	ASSERT_TRUE(Port.IsValid());
	const FZorvekMCPBridgeObjectHandle Holder = FindObject(*Port, TEXT("/Game/Holder.Holder"));
	const TSharedPtr<FJsonObject> Node = ExportStructJson(*Port, Port->GetReflection().FindProperty(Holder, TEXT("Block")), 0, MaxExportedStructDepth);
	EXPECT_EQ(Node->GetIntegerField(TEXT("field_count")), 60);
	EXPECT_TRUE(Node->GetBoolField(TEXT("truncated")));
}

TEST_F(PropertyExportTest, NestedStructsUnpackUpToTheMaximumDepth)
{
	// Tiers holds Tier2, which holds Tier3, which holds Tier4: the fourth level shows its text only.
	const TSharedPtr<FJsonObject> Tier1 = ExportStructJson(*Port, Property(TEXT("Tiers")), 0, MaxExportedStructDepth);
	const auto FindField = [](const TSharedPtr<FJsonObject>& StructNode, const TCHAR* Name) -> TSharedPtr<FJsonObject>
	{
		for (const TSharedPtr<FJsonValue>& Field : StructNode->GetArrayField(TEXT("fields")))
		{
			if (Field->AsObject()->GetStringField(TEXT("name")) == Name)
			{
				return Field->AsObject();
			}
		}
		return nullptr;
	};
	const TSharedPtr<FJsonObject> Tier2 = FindField(Tier1, TEXT("Tier2"));
	ASSERT_TRUE(Tier2.IsValid() && Tier2->HasField(TEXT("struct")));
	const TSharedPtr<FJsonObject> Tier3 = FindField(Tier2->GetObjectField(TEXT("struct")), TEXT("Tier3"));
	ASSERT_TRUE(Tier3.IsValid() && Tier3->HasField(TEXT("struct")));
	const TSharedPtr<FJsonObject> Tier4 = FindField(Tier3->GetObjectField(TEXT("struct")), TEXT("Tier4"));
	ASSERT_TRUE(Tier4.IsValid());
	EXPECT_FALSE(Tier4->HasField(TEXT("struct")));
	EXPECT_EQ(S(Tier4->GetStringField(TEXT("value"))), "(Label=\"Tier 4\",Depth=4,Offset=(X=1.000000,Y=2.000000,Z=3.000000))");

	// Invalid cursors give empty nodes rather than failures.
	EXPECT_TRUE(ExportPropertyValueJson(*Port, FZorvekMCPBridgePropertyCursor(), 0, 4)->Values.IsEmpty());
	EXPECT_TRUE(ExportStructJson(*Port, Property(TEXT("TableName")), 0, 4)->Values.IsEmpty());
}

TEST_F(PropertyExportTest, ImportFailsOnlyWhereTheEngineFails)
{
	FString Error;
	EXPECT_FALSE(ImportPropertyText(*Port, FZorvekMCPBridgeObjectHandle(), TEXT("TableName"), TEXT("X"), Error));
	EXPECT_EQ(S(Error), "Property import target is invalid.");

	EXPECT_FALSE(ImportPropertyText(*Port, LootTable, TEXT("Tables.Name"), TEXT("X"), Error));
	EXPECT_EQ(S(Error), "Property 'Tables.Name' was not found on LootTableDataAsset.");

	// An integer without digits fails and leaves the value (unreal-behaviour-world-assets.md §1.9).
	EXPECT_FALSE(ImportPropertyText(*Port, LootTable, TEXT("InternalSeed"), TEXT("many"), Error));
	EXPECT_EQ(S(Error), "Could not import value 'many' for property 'InternalSeed'.");
	EXPECT_EQ(S(ExportPropertyValueJson(*Port, Property(TEXT("InternalSeed")), 0, 4)->GetStringField(TEXT("value"))), "1234");
	// So does a class of the wrong meta class.
	EXPECT_FALSE(ImportPropertyText(*Port, LootTable, TEXT("NativeClass"), TEXT("/Script/Engine.Actor"), Error));
	EXPECT_EQ(S(Error), "Could not import value '/Script/Engine.Actor' for property 'NativeClass'.");

	// A reference to an object of another class finds nothing of the property's class: null,
	// and a success (§1.9).
	ASSERT_TRUE(ImportPropertyText(*Port, LootTable, TEXT("FallbackTable"), TEXT("/Game/Data/DA_LootTable.DA_LootTable"), Error)) << S(Error);
	ASSERT_TRUE(ImportPropertyText(*Port, LootTable, TEXT("FallbackTable"), TEXT("/Game/Materials/M_Rock.M_Rock"), Error)) << S(Error);
	EXPECT_FALSE(Property(TEXT("FallbackTable")).GetReferencedObject().IsValid());

	// A misspelled struct field is skipped and the rest imported (§1.7).
	ASSERT_TRUE(ImportPropertyText(*Port, LootTable, TEXT("Summary"), TEXT("(Value=1,Nope=2)"), Error)) << S(Error);
	EXPECT_EQ(S(ExportPropertyValueJson(*Port, Property(TEXT("Summary")).FindStructField(TEXT("Value")), 0, 4)->GetStringField(TEXT("value"))), "1");
	// A struct text that breaks after its first field fails, and the engine has written that
	// field already.
	EXPECT_FALSE(ImportPropertyText(*Port, LootTable, TEXT("Summary"), TEXT("(Value=2,Icon=None"), Error));
	EXPECT_EQ(S(ExportPropertyValueJson(*Port, Property(TEXT("Summary")).FindStructField(TEXT("Value")), 0, 4)->GetStringField(TEXT("value"))), "2");
}

TEST_F(PropertyExportTest, ImportSetsOneValueAndKeepsUnnamedStructFields)
{
	FString Error;
	ASSERT_TRUE(ImportPropertyText(*Port, LootTable, TEXT("internalseed"), TEXT("42"), Error)) << S(Error);
	ASSERT_TRUE(ImportPropertyText(*Port, LootTable, TEXT("Summary"), TEXT("(Value=99)"), Error)) << S(Error);
	ASSERT_TRUE(ImportPropertyText(*Port, LootTable, TEXT("FallbackTable"), TEXT("/Game/Data/DA_LootTable.DA_LootTable"), Error)) << S(Error);
	FString Text;
	Property(TEXT("InternalSeed")).ExportText(Text);
	EXPECT_EQ(S(Text), "42");
	// The transient CachedScore is not written (§1.2); the reference is quoted whole (§1.4).
	Property(TEXT("Summary")).ExportText(Text);
	EXPECT_EQ(S(Text), "(DisplayName=INVTEXT(\"Forest Loot\"),Value=99,Icon=\"/Script/Engine.Texture2D'/Game/Textures/T_M_Rock_D.T_M_Rock_D'\","
		"Tint=(R=0.200000,G=0.900000,B=0.300000,A=1.000000))");
	EXPECT_EQ(S(Property(TEXT("FallbackTable")).GetReferencedObject().IsValid() ? Port->GetObjects().GetIdentity(Property(TEXT("FallbackTable")).GetReferencedObject()).Name : FString()), "DA_LootTable");
}

TEST(PropertyExport, DefaultValuesHaveTheirTextInsteadOfAFailure)
{
	// The flat export uses the always-writing export, so an object left at its defaults shows
	// False, 0, None and empty texts where the engine's delta export would write nothing
	// (unreal-api-editor.md §1.6); a default struct still leaves out its zero fields.
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	TArray<TSharedPtr<FJsonValue>> References;
	TArray<TSharedPtr<FJsonValue>> Failures;
	const TSharedPtr<FJsonObject> Properties = ExportObjectProperties(*Port, FindObject(*Port, TEXT("/Game/Scratch/DA_Unsaved.DA_Unsaved")), 0, References, Failures);
	const auto Value = [&Properties](const TCHAR* Name)
	{
		return S(Properties->GetObjectField(Name)->GetStringField(TEXT("value")));
	};
	EXPECT_EQ(Value(TEXT("TableName")), "Scratch");
	EXPECT_EQ(Value(TEXT("SearchKey")), "None");
	EXPECT_EQ(Value(TEXT("Drops")), "");
	EXPECT_EQ(Value(TEXT("BonusIcon")), "None");
	EXPECT_EQ(Value(TEXT("NativeClass")), "None");
	EXPECT_EQ(Value(TEXT("StatBlock")), "()");
	EXPECT_EQ(Value(TEXT("Summary")), "(Tint=(R=0.000000,G=0.000000,B=0.000000,A=0.000000))");
	EXPECT_EQ(Value(TEXT("Tiers")), "(Tier2=(Tier3=(Tier4=(Offset=(X=0.000000,Y=0.000000,Z=0.000000)))))");
	// Only the property that cannot be exported at all is a failure.
	EXPECT_EQ(ToStd(Collect(Failures, TEXT("property"))), (std::vector<std::string>{"PreviewCache"}));
	EXPECT_TRUE(References.IsEmpty());
}
