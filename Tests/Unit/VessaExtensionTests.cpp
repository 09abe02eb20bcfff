// The extension object model: parameter typing and descriptions, discovery markers, the class
// default refresh, context matching, marshalling both ways and the two kinds of calls.
#include "VessaTestSupport.h"

using namespace ZorvekAssetTests;
using namespace ZorvekVessaTests;
using namespace SimulatedParameterFlags;

namespace
{
	const uint32 VessaTestFunctionFlags = SimulatedFunctionFlags::Public | SimulatedFunctionFlags::BlueprintCallable;

	TSharedPtr<FJsonObject> FindParameter(const FZorvekMCPBridgeVessaActionInfo& Action, const TCHAR* Name)
	{
		for (const FZorvekMCPBridgeVessaParameterInfo& Parameter : Action.ParameterDefinitions)
		{
			if (Parameter.Name == Name)
			{
				return ParseObject(Parameter.ParameterTypeJsonString);
			}
		}
		ADD_FAILURE() << "no parameter " << S(Name);
		return MakeShared<FJsonObject>();
	}

	FZorvekMCPBridgeVessaActionOutcome RunAction(FSimulatedEditorPort& Port, const TCHAR* ClassPath, const TSharedPtr<FJsonObject>& Request)
	{
		FZorvekMCPBridgeVessaDefinitionData Definition = GetDefinition(Port, ClassPath);
		const FZorvekMCPBridgeObjectHandle Instance = Port.GetFunctions().CreateExtensionInstance(ClassPath);
		return ZorvekMCPBridgeVessa::ExecuteAction(Port.GetFunctions(), Instance, ClassPath, Definition, Request);
	}

	TSharedPtr<FJsonObject> RunQuery(FSimulatedEditorPort& Port, const TCHAR* ClassPath, const TSharedPtr<FJsonObject>& Request)
	{
		FZorvekMCPBridgeVessaDefinitionData Definition = GetDefinition(Port, ClassPath);
		const FZorvekMCPBridgeObjectHandle Instance = Port.GetFunctions().CreateExtensionInstance(ClassPath);
		const TSharedPtr<FJsonValue> Value = ZorvekMCPBridgeVessa::ExecuteQuery(Port.GetFunctions(), Instance, ClassPath, Definition, Request);
		return Value.IsValid() ? Value->AsObject() : nullptr;
	}

	int32 CountLevelActors(FSimulatedEditorPort& Port)
	{
		const TSharedPtr<FJsonObject> Result = RunQuery(Port, LevelToolsId, Object({{TEXT("query_name"), Text(TEXT("CountActorsByClass"))}}));
		return (int32)Result->GetNumberField(TEXT("Count"));
	}
}

using FVessaTypingTest = FVessaTest;
using FVessaDiscoveryTest = FVessaTest;
using FVessaCallTest = FVessaTest;

TEST_F(FVessaTypingTest, ParameterKindsFollowTheEngineOrderWithUnknownWidthsAndNestedDescriptions)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleWithExtensions();
	FSimulatedType* Class = AddExtensionClass(*Port, TEXT("/Script/SampleGame.VessaTypingProbe"));
	SimulatedVessa::AddFunction(Port->GetEditor(), Class, TEXT("TakeAll"), VessaTestFunctionFlags, {
		{TEXT("Wide"), TEXT("int64"), 0}, {TEXT("Raw"), TEXT("uint8"), 0}, {TEXT("Precise"), TEXT("double"), 0}, {TEXT("Label"), TEXT("FText"), 0},
		{TEXT("Key"), TEXT("FName"), 0}, {TEXT("Small"), TEXT("uint16"), 0}, {TEXT("Mode"), TEXT("enum:/Script/Engine.EBlendMode"), 0},
		{TEXT("Place"), TEXT("struct:/Script/CoreUObject.Transform"), 0}, {TEXT("Soft"), TEXT("softobject:/Script/Engine.Actor"), 0},
		{TEXT("Kind"), TEXT("class:/Script/Engine.Actor"), 0}, {TEXT("Drops"), TEXT("array:struct:/Script/SampleGame.LootDrop"), 0},
	}, {{TEXT("Category"), TEXT("Vessa Actions")}}, nullptr);

	const FZorvekMCPBridgeVessaDefinitionData Definition = GetDefinition(*Port, TEXT("/Script/SampleGame.VessaTypingProbe"));
	ASSERT_EQ(Definition.Actions.Num(), 1);
	const FZorvekMCPBridgeVessaActionInfo& Action = Definition.Actions[0];
	// int64 and uint16 are integers of another width: Unknown; a byte without an enum is an Enum.
	const std::pair<const TCHAR*, const char*> Expected[] = {
		{TEXT("Wide"), "Unknown"}, {TEXT("Raw"), "Enum"}, {TEXT("Precise"), "Float"}, {TEXT("Label"), "String"}, {TEXT("Key"), "String"},
		{TEXT("Small"), "Unknown"}, {TEXT("Mode"), "Enum"}, {TEXT("Place"), "Transform"}, {TEXT("Soft"), "Unknown"}, {TEXT("Kind"), "Object"},
		{TEXT("Drops"), "Array"},
	};
	for (const auto& [Name, Type] : Expected)
	{
		EXPECT_EQ(S(FindParameter(Action, Name)->GetStringField(TEXT("type"))), Type) << S(Name);
	}
	const TSharedPtr<FJsonObject> Element = FindParameter(Action, TEXT("Drops"))->GetObjectField(TEXT("arrayElement"));
	EXPECT_EQ(S(Element->GetStringField(TEXT("type"))), "CustomStruct");
	const TSharedPtr<FJsonObject> StructInfo = Element->GetObjectField(TEXT("structElement"));
	EXPECT_EQ(S(StructInfo->GetStringField(TEXT("structType"))), "LootDrop");
	EXPECT_EQ(ToStd(Collect(StructInfo->GetArrayField(TEXT("parameters")), TEXT("name"))), (std::vector<std::string>{"ItemName", "Weight", "Quantity"}));
	EXPECT_EQ(ToStd(Collect(StructInfo->GetArrayField(TEXT("parameters")), TEXT("type"))), (std::vector<std::string>{"String", "Float", "Int"}));
	EXPECT_EQ(Action.ParameterDefinitions[10].ArrayElementType, EZorvekMCPBridgeVessaParameterKind::CustomStruct);
}

TEST_F(FVessaTypingTest, TypeStringsKeepTheSerializedNumberingAndOutOfRangeIsUnknown)
{
	EXPECT_EQ(S(ZorvekMCPBridgeVessa::GetParameterStringForType((EZorvekMCPBridgeVessaParameterKind)5)), "Vector3");
	EXPECT_EQ(S(ZorvekMCPBridgeVessa::GetParameterStringForType((EZorvekMCPBridgeVessaParameterKind)11)), "Transform");
	EXPECT_EQ(S(ZorvekMCPBridgeVessa::GetParameterStringForType((EZorvekMCPBridgeVessaParameterKind)13)), "Object");
	EXPECT_EQ(S(ZorvekMCPBridgeVessa::GetParameterStringForType((EZorvekMCPBridgeVessaParameterKind)0)), "Unknown");
	EXPECT_EQ(S(ZorvekMCPBridgeVessa::GetParameterStringForType((EZorvekMCPBridgeVessaParameterKind)14)), "Unknown");
	EXPECT_EQ(ZorvekMCPBridgeVessa::GetParameterTypeForProperty(nullptr), EZorvekMCPBridgeVessaParameterKind::None);
}

TEST_F(FVessaDiscoveryTest, EveryMarkerSpellingCountsAndCategorySpacesAreIgnored)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleWithExtensions();
	FSimulatedType* Class = AddExtensionClass(*Port, TEXT("/Script/SampleGame.VessaMarkerProbe"));
	FSimulatedEditor& Editor = Port->GetEditor();
	SimulatedVessa::AddFunction(Editor, Class, TEXT("ByMeta"), VessaTestFunctionFlags, {}, {{TEXT("ZorvikVessaAction"), TEXT("")}}, nullptr);
	SimulatedVessa::AddFunction(Editor, Class, TEXT("BySpacedCategory"), VessaTestFunctionFlags, {}, {{TEXT("Category"), TEXT("Vessa Actions")}}, nullptr);
	SimulatedVessa::AddFunction(Editor, Class, TEXT("BySubCategory"), VessaTestFunctionFlags, {}, {{TEXT("Category"), TEXT("Tools|zorvek vessa queries")}}, nullptr);
	SimulatedVessa::AddFunction(Editor, Class, TEXT("Plain"), VessaTestFunctionFlags, {}, {{TEXT("Category"), TEXT("Default")}, {TEXT("ToolTip"), TEXT("Not published")}}, nullptr);
	// Blueprint outputs carry no ReturnParm; a native const reference is an input.
	SimulatedVessa::AddFunction(Editor, Class, TEXT("Lookup"), VessaTestFunctionFlags, {
		{TEXT("Key"), TEXT("FString"), OutParm | ReferenceParm | ConstParm}, {TEXT("Found"), TEXT("bool"), OutParm}, {TEXT("ReturnValue"), TEXT("int32"), OutParm | ReturnParm},
	}, {{TEXT("VessaQuery"), TEXT("")}, {TEXT("ToolTip"), TEXT("Look a key up.")}}, nullptr);

	const FZorvekMCPBridgeVessaDefinitionData Definition = GetDefinition(*Port, TEXT("/Script/SampleGame.VessaMarkerProbe"));
	TArray<FString> Actions;
	for (const FZorvekMCPBridgeVessaActionInfo& Action : Definition.Actions)
	{
		Actions.Add(Action.FunctionName);
	}
	EXPECT_EQ(ToStd(Actions), (std::vector<std::string>{"ByMeta", "BySpacedCategory"}));
	ASSERT_EQ(Definition.Queries.Num(), 2);
	EXPECT_EQ(S(Definition.Queries[0].FunctionName), "BySubCategory");
	const FZorvekMCPBridgeVessaQueryInfo& Lookup = Definition.Queries[1];
	EXPECT_EQ(S(Lookup.Description), "Look a key up.");
	ASSERT_EQ(Lookup.ParameterDefinitions.Num(), 1);
	EXPECT_EQ(S(Lookup.ParameterDefinitions[0].Name), "Key");
	ASSERT_EQ(Lookup.ResultDefinitions.Num(), 1);
	EXPECT_EQ(S(Lookup.ResultDefinitions[0].Name), "Found");
}

TEST_F(FVessaDiscoveryTest, RefreshSetsIdAndNameAndKeepsDescriptionsUntilTheParameterIsRenamed)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleWithExtensions();
	FSimulatedFunctions& Functions = Port->GetSimulatedFunctions();
	// The sample Blueprint was given no name: the class's display name fills it.
	FString ClassPath;
	ASSERT_TRUE(Functions.LoadBlueprintGeneratedClass(TEXT("/Game/Vessa/EUB_AssetAudit.EUB_AssetAudit"), ClassPath));
	FSimulatedVessaClassDefault* Default = Functions.GetClassDefault(ClassPath);
	ASSERT_TRUE(Default != nullptr);
	EXPECT_EQ(S(Default->Definition.ExtensionId), S(AuditId));
	EXPECT_EQ(S(Default->Definition.ExtensionName), "EUB Asset Audit");

	// Descriptions typed in the class defaults survive the next compile...
	Default->Definition.Queries[0].ParameterDefinitions[0].Description = TEXT("Class path such as /Script/Engine.Material.");
	Default->Definition.Queries[0].ResultDefinitions[0].Description = TEXT("How many there are.");
	Functions.RecompileExtensionClass(ClassPath);
	EXPECT_EQ(S(Default->Definition.Queries[0].ParameterDefinitions[0].Description), "Class path such as /Script/Engine.Material.");
	EXPECT_EQ(S(ParseObject(Default->Definition.Queries[0].ParameterDefinitions[0].ParameterTypeJsonString)->GetStringField(TEXT("description"))),
		"Class path such as /Script/Engine.Material.");
	EXPECT_EQ(S(Default->Definition.Queries[0].ResultDefinitions[0].Description), "How many there are.");

	// ...and are gone once the parameter has another name.
	const FSimulatedFunction* Function = Port->GetEditor().FindTypeByPath(ClassPath)->FindFunction(TEXT("CountAssetsOfClass"));
	const_cast<FSimulatedProperty&>(*Function->Parameters[0]).Name = TEXT("AssetClassPath");
	Functions.RecompileExtensionClass(ClassPath);
	EXPECT_EQ(S(Default->Definition.Queries[0].ParameterDefinitions[0].Name), "AssetClassPath");
	EXPECT_TRUE(Default->Definition.Queries[0].ParameterDefinitions[0].Description.IsEmpty());
	EXPECT_EQ(S(Default->Definition.Queries[0].ResultDefinitions[0].Description), "How many there are.");

	// The base class itself is never refreshed.
	FZorvekMCPBridgeVessaDefinitionData Base;
	ZorvekMCPBridgeVessa::RefreshExtension(Functions, SimulatedVessa::ExtensionBaseClassPath, Base);
	EXPECT_TRUE(Base.ExtensionId.IsEmpty());
}

TEST_F(FVessaDiscoveryTest, AssetEditorContextNeedsAnObjectWhoseClassNameContainsTheType)
{
	FZorvekMCPBridgeVessaDefinitionData Definition;
	EXPECT_TRUE(ZorvekMCPBridgeVessa::MatchesContext(Definition, false, FString()));
	Definition.ContextType = EZorvekMCPBridgeVessaContextKind::AssetEditor;
	EXPECT_FALSE(ZorvekMCPBridgeVessa::MatchesContext(Definition, false, FString()));
	EXPECT_TRUE(ZorvekMCPBridgeVessa::MatchesContext(Definition, true, TEXT("Texture2D")));
	Definition.SelectedAssetType = TEXT("material");
	EXPECT_TRUE(ZorvekMCPBridgeVessa::MatchesContext(Definition, true, TEXT("MaterialInstanceConstant")));
	EXPECT_FALSE(ZorvekMCPBridgeVessa::MatchesContext(Definition, true, TEXT("Texture2D")));
	EXPECT_EQ(S(ZorvekMCPBridgeVessa::GetExtensionDefinitionJson(Definition)->GetStringField(TEXT("contextType"))), "AssetEditor");
}

TEST_F(FVessaCallTest, ActionRunsInOneUndoTransactionAndReportsItsResults)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleWithExtensions();
	const size_t UndoBefore = Port->GetEditor().GetUndoBuffer().size();
	// The name resolves without regard to case.
	const FZorvekMCPBridgeVessaActionOutcome Outcome = RunAction(*Port, LevelToolsId, Object({
		{TEXT("action_name"), Text(TEXT("spawntaggedactor"))},
		{TEXT("parameters"), ObjectValue({{TEXT("actorname"), Text(TEXT("Beacon"))}, {TEXT("Location"), ObjectValue({{TEXT("x"), Number(100)}, {TEXT("Z"), Number(5)}})}})},
	}));
	EXPECT_TRUE(Outcome.bActionCalled);
	EXPECT_TRUE(Outcome.bSuccess) << S(Outcome.ErrorMessage);
	EXPECT_EQ(S(Outcome.Result), "Spawned /Temp/Untitled_1.Beacon at (100, 0, 5).");
	ASSERT_EQ(Port->GetEditor().GetUndoBuffer().size(), UndoBefore + 1);
	EXPECT_EQ(S(Port->GetEditor().GetUndoBuffer().back().Title), "Execute Vessa Action: SpawnTaggedActor");
	EXPECT_EQ(CountLevelActors(*Port), 1);
}

TEST_F(FVessaCallTest, ReportedErrorWinsOverResultsAndRefusedCallsChangeNothing)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleWithExtensions();
	const FZorvekMCPBridgeVessaActionOutcome Failed = RunAction(*Port, FailingId, Object({{TEXT("action_name"), Text(TEXT("AlwaysFails"))}}));
	EXPECT_TRUE(Failed.bActionCalled);
	EXPECT_FALSE(Failed.bSuccess);
	EXPECT_EQ(S(Failed.ErrorMessage), "The failing sample always fails.");
	EXPECT_TRUE(Failed.Result.IsEmpty());

	const size_t UndoBefore = Port->GetEditor().GetUndoBuffer().size();
	const std::pair<TSharedPtr<FJsonObject>, const char*> Refusals[] = {
		{Object({}), "Action request is missing action_name."},
		{Object({{TEXT("action_name"), Text(TEXT(""))}}), "Action request is missing action_name."},
		{Object({{TEXT("action_name"), Text(TEXT("Teleport"))}}), "Action not found: Teleport"},
		// A Vector needs an object or a text the struct import reads; a number is neither.
		{Object({{TEXT("action_name"), Text(TEXT("SpawnTaggedActor"))}, {TEXT("parameters"), ObjectValue({{TEXT("Location"), Number(3)}})}}),
			"Could not marshal action parameters from JSON."},
	};
	for (const auto& [Request, Message] : Refusals)
	{
		const FZorvekMCPBridgeVessaActionOutcome Outcome = RunAction(*Port, LevelToolsId, Request);
		EXPECT_TRUE(Outcome.bActionCalled);
		EXPECT_FALSE(Outcome.bSuccess);
		EXPECT_EQ(S(Outcome.ErrorMessage), Message);
	}
	// An action the definition lists that the class no longer has.
	FZorvekMCPBridgeVessaDefinitionData Stale = GetDefinition(*Port, LevelToolsId);
	Stale.Actions[0].FunctionName = TEXT("RemovedAction");
	const FZorvekMCPBridgeVessaActionOutcome Missing = ZorvekMCPBridgeVessa::ExecuteAction(Port->GetFunctions(),
		Port->GetFunctions().CreateExtensionInstance(LevelToolsId), LevelToolsId, Stale, Object({{TEXT("action_name"), Text(TEXT("RemovedAction"))}}));
	EXPECT_EQ(S(Missing.ErrorMessage), "Action function not found.");

	EXPECT_EQ(Port->GetEditor().GetUndoBuffer().size(), UndoBefore);
	EXPECT_EQ(CountLevelActors(*Port), 0);
}

TEST_F(FVessaCallTest, QueryMarshalsStructsEnumsColoursAndTextsInAndOut)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleWithExtensions();
	const TSharedPtr<FJsonObject> Result = RunQuery(*Port, ShowcaseId, Object({
		{TEXT("query_name"), Text(TEXT("EchoDrop"))},
		{TEXT("parameters"), ObjectValue({
			// Struct keys match without regard to case; extra keys are ignored.
			{TEXT("Drop"), ObjectValue({{TEXT("itemname"), Text(TEXT("Gem"))}, {TEXT("Weight"), Number(2.5)}, {TEXT("Quantity"), Text(TEXT("7"))}, {TEXT("Colour"), Text(TEXT("red"))}})},
			{TEXT("Labels"), MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>{Text(TEXT("a")), Text(TEXT("b")), Text(TEXT("c"))})},
			{TEXT("BlendMode"), Text(TEXT("BLEND_Masked"))},
			{TEXT("Tint"), Text(TEXT("#FF000080"))},
			{TEXT("Caption"), Text(TEXT("Hello"))},
		})},
	}));
	ASSERT_TRUE(Result.IsValid());
	EXPECT_FALSE(Result->HasField(TEXT("error")));
	// Struct keys come back in the converter's standardized case; the return value is an output too.
	const TSharedPtr<FJsonObject> Drop = Result->GetObjectField(TEXT("EchoedDrop"));
	EXPECT_EQ(S(Drop->GetStringField(TEXT("itemName"))), "Gem");
	EXPECT_DOUBLE_EQ(Drop->GetNumberField(TEXT("weight")), 2.5);
	EXPECT_EQ(Drop->GetNumberField(TEXT("quantity")), 7);
	EXPECT_EQ(Result->GetNumberField(TEXT("LabelCount")), 3);
	EXPECT_EQ(S(Result->GetStringField(TEXT("EchoedBlendMode"))), "BLEND_Masked");
	EXPECT_EQ(S(Result->GetStringField(TEXT("EchoedCaption"))), "Hello");
	EXPECT_DOUBLE_EQ(Result->GetObjectField(TEXT("EchoedTint"))->GetNumberField(TEXT("r")), 1.0);
	EXPECT_NEAR(Result->GetObjectField(TEXT("EchoedTint"))->GetNumberField(TEXT("a")), 128.0 / 255.0, 1e-9);
	EXPECT_TRUE(Result->GetBoolField(TEXT("ReturnValue")));
}

TEST_F(FVessaCallTest, QueryFailuresAreErrorObjects)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleWithExtensions();
	const std::pair<TSharedPtr<FJsonObject>, const char*> Failures[] = {
		{nullptr, "Query request invalid."},
		{Object({}), "Query request is missing query_name."},
		{Object({{TEXT("query_name"), Text(TEXT("Nope"))}}), "Query not found: Nope"},
		{Object({{TEXT("query_name"), Text(TEXT("EchoDrop"))}, {TEXT("parameters"), ObjectValue({{TEXT("BlendMode"), Text(TEXT("BLEND_Glowing"))}})}}),
			"Could not marshal query parameters from JSON."},
		{Object({{TEXT("query_name"), Text(TEXT("EchoDrop"))}, {TEXT("parameters"), ObjectValue({{TEXT("Labels"), Text(TEXT("a,b"))}})}}),
			"Could not marshal query parameters from JSON."},
	};
	for (const auto& [Request, Message] : Failures)
	{
		const TSharedPtr<FJsonObject> Result = RunQuery(*Port, ShowcaseId, Request);
		ASSERT_TRUE(Result.IsValid());
		EXPECT_EQ(S(Result->GetStringField(TEXT("error"))), Message);
	}
}
