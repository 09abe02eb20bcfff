// What the simulated Blueprints stand on: functions declared in fixtures with the flags UHT
// gives them, the engine's key table, the StandardMacros library and the sample project's
// Blueprints as the engine would hold them.
#include "AssetTestSupport.h"
#include "SimulatedBlueprint.h"
#include "SimulatedKeys.h"

using namespace ZorvekAssetTests;

namespace
{
	const FSimulatedFunction& FindFunction(FSimulatedEditor& Editor, const TCHAR* ClassPath, const TCHAR* FunctionName)
	{
		static const FSimulatedFunction Missing;
		const FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
		const FSimulatedFunction* Function = Class ? Class->FindFunction(FunctionName) : nullptr;
		EXPECT_NE(Function, nullptr) << UECompatToUtf8(ClassPath) << ":" << UECompatToUtf8(FunctionName);
		return Function ? *Function : Missing;
	}

	uint64 ParameterFlags(const FSimulatedFunction& Function, const TCHAR* ParameterName)
	{
		for (const std::shared_ptr<FSimulatedProperty>& Parameter : Function.Parameters)
		{
			if (Parameter->Name == ParameterName)
			{
				return Parameter->Flags;
			}
		}
		ADD_FAILURE() << "no parameter " << UECompatToUtf8(ParameterName);
		return 0;
	}

	// A fixture on top of the Blueprint engine types; the error of a fixture that fails to load.
	FString LoadError(const FString& BodyJson)
	{
		FString Error;
		LoadInlineProject(FString(TEXT("\"include\": [\"BlueprintEngineTypes.json\"], ")) + BodyJson, &Error, false);
		return Error;
	}

	FZorvekMCPBridgeBlueprintSnapshot ReadBlueprint(FSimulatedEditorPort& Port, const TCHAR* ObjectPath)
	{
		FZorvekMCPBridgeBlueprintSnapshot Snapshot;
		EXPECT_TRUE(Port.GetBlueprints().ReadBlueprint(FindObject(Port, ObjectPath), Snapshot)) << UECompatToUtf8(ObjectPath);
		return Snapshot;
	}

	const FZorvekMCPBridgeGraphSnapshot* FindGraph(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const TCHAR* GraphName)
	{
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
		{
			if (Graph.Name == GraphName)
			{
				return &Graph;
			}
		}
		ADD_FAILURE() << "no graph " << UECompatToUtf8(GraphName);
		return nullptr;
	}

	std::vector<std::string> PinNames(const FSimulatedNode& Node, EZorvekMCPBridgePinDirection Direction)
	{
		std::vector<std::string> Names;
		for (const std::unique_ptr<FSimulatedPin>& Pin : Node.Pins)
		{
			if (Pin->Direction == Direction)
			{
				Names.push_back(S(Pin->PinName.ToString()));
			}
		}
		return Names;
	}

	namespace Parm = SimulatedParameterFlags;
	namespace Func = SimulatedFunctionFlags;
}

// unreal-behaviour-world-assets.md §8.1 (parameter flags), unreal-behaviour-blueprints.md §2.5.
TEST(SimulatedBlueprintLibrary, NativeFunctionsCarryTheFlagsUhtGivesThem)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedEditor& Editor = Port->GetEditor();

	const FSimulatedFunction& PrintString = FindFunction(Editor, TEXT("/Script/Engine.KismetSystemLibrary"), TEXT("PrintString"));
	EXPECT_EQ(PrintString.FunctionFlags, Func::Static | Func::Final | Func::Native | Func::Public | Func::BlueprintCallable | Func::HasOutParms);
	// const FString& is an input passed by reference; const UObject* and const FName only const.
	EXPECT_EQ(ParameterFlags(PrintString, TEXT("InString")), Parm::Parm | Parm::OutParm | Parm::ReferenceParm | Parm::ConstParm);
	EXPECT_EQ(ParameterFlags(PrintString, TEXT("WorldContextObject")), Parm::Parm | Parm::ConstParm);
	EXPECT_EQ(ParameterFlags(PrintString, TEXT("Duration")), Parm::Parm);
	ASSERT_EQ(PrintString.Parameters.size(), 7u);
	EXPECT_EQ(PrintString.Parameters.back()->Name, TEXT("Key"));
	// A value-less specifier is present with an empty value.
	ASSERT_NE(PrintString.FindMetaData(TEXT("CallableWithoutWorldContext")), nullptr);
	EXPECT_TRUE(PrintString.FindMetaData(TEXT("CallableWithoutWorldContext"))->IsEmpty());
	EXPECT_EQ(*PrintString.FindMetaData(TEXT("CPP_Default_TextColor")), TEXT("(R=0.000000,G=0.660000,B=1.000000,A=1.000000)"));
	EXPECT_EQ(PrintString.FindMetaData(TEXT("Latent")), nullptr);

	// A const BlueprintCallable function is pure; the return value is OutParm+ReturnParm.
	const FSimulatedFunction& GetLocation = FindFunction(Editor, TEXT("/Script/Engine.Actor"), TEXT("K2_GetActorLocation"));
	EXPECT_TRUE(GetLocation.HasAnyFunctionFlags(Func::BlueprintPure));
	EXPECT_TRUE(GetLocation.HasAnyFunctionFlags(Func::Const));
	EXPECT_EQ(ParameterFlags(GetLocation, TEXT("ReturnValue")), Parm::Parm | Parm::OutParm | Parm::ReturnParm);
	// A non-const reference is an output.
	const FSimulatedFunction& SetLocation = FindFunction(Editor, TEXT("/Script/Engine.Actor"), TEXT("K2_SetActorLocation"));
	EXPECT_FALSE(SetLocation.HasAnyFunctionFlags(Func::BlueprintPure));
	EXPECT_EQ(ParameterFlags(SetLocation, TEXT("SweepHitResult")), Parm::Parm | Parm::OutParm);

	// Implementable events have no native code; Delay is latent through its metadata.
	const FSimulatedFunction& BeginPlay = FindFunction(Editor, TEXT("/Script/Engine.Actor"), TEXT("ReceiveBeginPlay"));
	EXPECT_EQ(BeginPlay.FunctionFlags, Func::Event | Func::BlueprintEvent | Func::Protected);
	EXPECT_EQ(*FindFunction(Editor, TEXT("/Script/Engine.KismetSystemLibrary"), TEXT("Delay")).FindMetaData(TEXT("LatentInfo")), TEXT("LatentInfo"));

	// Functions are found through the class chain, names without regard to case.
	const FSimulatedFunction& Tick = FindFunction(Editor, TEXT("/Script/Engine.Character"), TEXT("receivetick"));
	EXPECT_EQ(Tick.Owner, Editor.FindTypeByPath(TEXT("/Script/Engine.Actor")));
	ASSERT_EQ(Tick.Parameters.size(), 1u);
	EXPECT_EQ(Editor.GetCppType(*Tick.Parameters[0]), TEXT("float"));
}

TEST(SimulatedBlueprintLibrary, FunctionDeclarationsThatUhtWouldRejectFailTheFixture)
{
	const FString Class = TEXT("\"classes\": [{\"path\": \"/Script/Game.Thing\", \"functions\": [%s]}]");
	const auto Load = [&Class](const TCHAR* Function)
	{
		return UECompatToUtf8(LoadError(Class.Replace(TEXT("%s"), Function)));
	};
	EXPECT_EQ(Load(TEXT("{\"name\": \"Go\", \"flags\": [\"callable\"]}")), "");
	EXPECT_NE(Load(TEXT("{\"name\": \"Go\", \"flags\": [\"blueprintcallable\"]}")).find("has an unknown flag 'blueprintcallable'"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"name\": \"Go\"}, {\"name\": \"GO\"}")).find("function GO is declared twice"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"name\": \"Go\", \"parameters\": [{\"name\": \"ReturnValue\", \"type\": \"bool\", \"flags\": [\"return\"]}, {\"name\": \"X\", \"type\": \"int32\"}]}")).find("is a return value"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"name\": \"Go\", \"parameters\": [{\"name\": \"Result\", \"type\": \"bool\", \"flags\": [\"return\"]}]}")).find("is a return value"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"name\": \"Go\", \"parameters\": [{\"name\": \"X\", \"type\": \"struct:/Script/Game.Nope\"}]}")).find("parameter X"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"name\": \"Go\", \"metadata\": {\"WorldContext\": \"Ctx\"}}")).find("WorldContext metadata naming Ctx"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"name\": \"Go\", \"metadata\": {\"CPP_Default_Y\": \"1\"}}")).find("a default for Y"), std::string::npos);
	EXPECT_NE(UECompatToUtf8(LoadError(TEXT("\"class_functions\": [{\"class\": \"/Script/Game.Nope\", \"functions\": []}]"))).find("not defined"), std::string::npos);
	// Structs have no functions.
	EXPECT_NE(UECompatToUtf8(LoadError(TEXT("\"structs\": [{\"path\": \"/Script/Game.Pod\", \"functions\": [{\"name\": \"Go\"}]}]"))).find("only classes have"), std::string::npos);
}

// unreal-behaviour-blueprints.md §7.2, §7.3.
TEST(SimulatedBlueprintLibrary, KeysAnswerTheEnginesPredicates)
{
	struct FKeyCase
	{
		const TCHAR* Name;
		const char* DisplayName;
		bool bAxis1D;
		bool bAxis2D;
		bool bAnalog;
		bool bBindable;
		const char* Category;
		bool bInputKey;
		bool bInputAxis;
	};
	const FKeyCase Cases[] = {
		{TEXT("SpaceBar"), "Space Bar", false, false, false, true, "Key", true, false},
		{TEXT("A"), "A", false, false, false, true, "Key", true, false},
		{TEXT("LeftMouseButton"), "Left Mouse Button", false, false, false, true, "Mouse", true, false},
		{TEXT("MouseX"), "Mouse X", true, false, true, true, "Mouse", false, true},
		{TEXT("MouseWheelAxis"), "Mouse Wheel Axis", true, false, true, true, "Mouse", false, true},
		{TEXT("MouseScrollUp"), "Mouse Wheel Up", false, false, false, true, "Mouse", true, false},
		{TEXT("Mouse2D"), "Mouse XY 2D-Axis", false, true, true, true, "Mouse", false, false},
		{TEXT("Gamepad_LeftX"), "Gamepad Left Thumbstick X-Axis", true, false, true, true, "Gamepad", false, true},
		{TEXT("Gamepad_Left2D"), "Gamepad Left Thumbstick 2D-Axis", false, true, true, true, "Gamepad", false, false},
		{TEXT("Gamepad_LeftTriggerAxis"), "Gamepad Left Trigger Axis", true, false, true, true, "Gamepad", false, true},
		{TEXT("Gamepad_LeftTrigger"), "Gamepad Left Trigger (Digital)", false, false, false, true, "Gamepad", true, false},
		{TEXT("Gamepad_LeftStick_Up"), "Gamepad Left Thumbstick Up", false, false, false, true, "Gamepad", true, false},
		{TEXT("Gamepad_FaceButton_Bottom"), "Gamepad Face Button Bottom", false, false, false, true, "Gamepad", true, false},
		{TEXT("Tilt"), "Tilt", false, false, true, true, "Motion", false, false},
		{TEXT("Vive_Left_Trigger_Axis"), "Vive (L) Trigger Axis", true, false, true, false, "Vive", false, false}};
	for (const FKeyCase& Case : Cases)
	{
		const FSimulatedKeyDetails* Key = FSimulatedKeys::Find(Case.Name);
		ASSERT_NE(Key, nullptr) << UECompatToUtf8(Case.Name);
		EXPECT_EQ(S(Key->GetDisplayName()), Case.DisplayName);
		EXPECT_EQ(Key->IsAxis1D(), Case.bAxis1D) << UECompatToUtf8(Case.Name);
		EXPECT_EQ(Key->IsAxis2D(), Case.bAxis2D) << UECompatToUtf8(Case.Name);
		EXPECT_EQ(Key->IsAnalog(), Case.bAnalog) << UECompatToUtf8(Case.Name);
		EXPECT_EQ(Key->IsBindableInBlueprints(), Case.bBindable) << UECompatToUtf8(Case.Name);
		EXPECT_EQ(S(Key->GetMenuCategory()), Case.Category);
		EXPECT_EQ(FSimulatedKeys::CanBeInputKeyEvent(Case.Name), Case.bInputKey) << UECompatToUtf8(Case.Name);
		EXPECT_EQ(FSimulatedKeys::CanBeInputAxisKeyEvent(Case.Name), Case.bInputAxis) << UECompatToUtf8(Case.Name);
	}
	// Lookup is by FName; the short name only when asked and defined.
	EXPECT_EQ(FSimulatedKeys::Find(TEXT("spacebar")), FSimulatedKeys::Find(TEXT("SpaceBar")));
	EXPECT_EQ(S(FSimulatedKeys::GetDisplayName(TEXT("SPACEBAR"), false)), "Space");
	EXPECT_EQ(S(FSimulatedKeys::GetDisplayName(TEXT("A"), false)), "A");
	// Unknown keys: no details, the raw name as display name, category Key; None is invalid.
	EXPECT_EQ(FSimulatedKeys::Find(TEXT("Gamepad_LeftStick_2D")), nullptr);
	EXPECT_EQ(FSimulatedKeys::Find(TEXT("None")), nullptr);
	EXPECT_EQ(S(FSimulatedKeys::GetDisplayName(TEXT("Gamepad_LeftStick_2D"))), "Gamepad_LeftStick_2D");
	EXPECT_EQ(S(FSimulatedKeys::GetMenuCategory(TEXT("NoSuchKey"))), "Key");
	EXPECT_FALSE(FSimulatedKeys::CanBeInputKeyEvent(TEXT("NoSuchKey")));
	// Names are unique in the table, whatever their case.
	const TArray<const FSimulatedKeyDetails*> Keys = FSimulatedKeys::GetAllKeys();
	for (const FSimulatedKeyDetails* Key : Keys)
	{
		EXPECT_EQ(FSimulatedKeys::Find(Key->Name), Key) << UECompatToUtf8(Key->Name);
	}
}

// unreal-behaviour-blueprints.md §2.3, §8.
TEST(SimulatedBlueprintLibrary, StandardMacrosTunnelsGiveTheMacroInstancePins)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedBlueprints& Blueprints = Port->GetEditor().GetBlueprints();
	FSimulatedBlueprint* Library = Blueprints.FindBlueprint(Port->GetEditor().FindObject(TEXT("/Engine/EditorBlueprintResources/StandardMacros.StandardMacros")));
	ASSERT_NE(Library, nullptr);
	EXPECT_EQ(Library->BlueprintType, EZorvekMCPBridgeBlueprintType::MacroLibrary);
	EXPECT_TRUE(Library->UbergraphPages.empty());
	std::vector<std::string> MacroNames;
	for (const std::unique_ptr<FSimulatedGraph>& Macro : Library->MacroGraphs)
	{
		MacroNames.push_back(S(Macro->GetName()));
	}
	for (const char* Required : {"DoOnce", "Gate", "FlipFlop", "ForLoop", "ForEachLoop", "WhileLoop", "IsValid", "Do N"})
	{
		EXPECT_NE(std::find(MacroNames.begin(), MacroNames.end(), Required), MacroNames.end()) << Required;
	}

	// The macro's inputs are the entry tunnel's outputs, its outputs the exit tunnel's inputs.
	FSimulatedGraph* DoOnce = Library->FindGraph(TEXT("DoOnce"));
	ASSERT_NE(DoOnce, nullptr);
	EXPECT_EQ(S(DoOnce->Object->GetPathName()), "/Engine/EditorBlueprintResources/StandardMacros.StandardMacros:DoOnce");
	const FSimulatedNode* Entry = nullptr;
	const FSimulatedNode* Exit = nullptr;
	for (const std::unique_ptr<FSimulatedNode>& Node : DoOnce->Nodes)
	{
		if (Node->NodeClass == TEXT("K2Node_Tunnel"))
		{
			(Node->bTunnelEntry ? Entry : Exit) = Node.get();
		}
	}
	ASSERT_TRUE(Entry && Exit);
	EXPECT_EQ(PinNames(*Entry, EZorvekMCPBridgePinDirection::Output), (std::vector<std::string>{"execute", "Reset", "Start Closed"}));
	EXPECT_EQ(PinNames(*Exit, EZorvekMCPBridgePinDirection::Input), (std::vector<std::string>{"Completed"}));

	// An instance placed in a sample Blueprint mirrors them, spaces kept.
	const FZorvekMCPBridgeBlueprintSnapshot Showcase = ReadBlueprint(*Port, TEXT("/Game/Blueprints/BP_Showcase.BP_Showcase"));
	const FZorvekMCPBridgeGraphSnapshot* EventGraph = FindGraph(Showcase, TEXT("EventGraph"));
	ASSERT_NE(EventGraph, nullptr);
	const FZorvekMCPBridgeNodeSnapshot* Instance = nullptr;
	for (const FZorvekMCPBridgeNodeSnapshot& Node : EventGraph->Nodes)
	{
		Instance = Node.Kind == EZorvekMCPBridgeNodeKind::MacroInstance ? &Node : Instance;
	}
	ASSERT_NE(Instance, nullptr);
	EXPECT_EQ(S(Instance->Title), "Do Once");
	EXPECT_EQ(S(Instance->Data.MacroGraphPath), "/Engine/EditorBlueprintResources/StandardMacros.StandardMacros:DoOnce");
	std::vector<std::string> Pins;
	for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Instance->Pins)
	{
		Pins.push_back(S(Pin.Pin.PinName.ToString()));
	}
	EXPECT_EQ(Pins, (std::vector<std::string>{"execute", "Reset", "Start Closed", "Completed"}));
}

// unreal-behaviour-blueprints.md §1.2, §1.3, §6.2; unreal-behaviour-world-assets.md §8.1.
TEST(SimulatedBlueprintLibrary, SampleBlueprintsAreHeldAsTheEditorWouldHoldThem)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedEditor& Editor = Port->GetEditor();
	const FZorvekMCPBridgeBlueprintSnapshot Showcase = ReadBlueprint(*Port, TEXT("/Game/Blueprints/BP_Showcase.BP_Showcase"));
	EXPECT_EQ(Showcase.Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);
	EXPECT_EQ(S(Showcase.GeneratedClassPath), "/Game/Blueprints/BP_Showcase.BP_Showcase_C");

	// Placing BeginPlay replaced its ghost; the other ghosts were wired over the same way.
	int32 BeginPlayNodes = 0;
	for (const FZorvekMCPBridgeNodeSnapshot& Node : FindGraph(Showcase, TEXT("EventGraph"))->Nodes)
	{
		if (Node.Kind == EZorvekMCPBridgeNodeKind::Event && Node.Data.EventName == TEXT("ReceiveBeginPlay"))
		{
			++BeginPlayNodes;
			EXPECT_TRUE(Node.bEnabled);
		}
	}
	EXPECT_EQ(BeginPlayNodes, 1);
	// A call of the Blueprint's own function is a self-context call on its generated class.
	const FZorvekMCPBridgeNodeSnapshot* OwnCall = nullptr;
	for (const FZorvekMCPBridgeNodeSnapshot& Node : FindGraph(Showcase, TEXT("EventGraph"))->Nodes)
	{
		OwnCall = Node.Kind == EZorvekMCPBridgeNodeKind::FunctionCall && Node.Data.MemberName == TEXT("ApplyDamage") ? &Node : OwnCall;
	}
	ASSERT_NE(OwnCall, nullptr);
	EXPECT_TRUE(OwnCall->Data.bSelfContext);
	EXPECT_EQ(S(OwnCall->Data.FunctionPath), "/Game/Blueprints/BP_Showcase.BP_Showcase_C:ApplyDamage");
	EXPECT_EQ(S(OwnCall->Title), "Apply Damage\nTarget is BP Showcase");

	// The first scene component placed as a root replaced DefaultSceneRoot; the tree is depth first.
	std::vector<std::string> Components;
	for (const FZorvekMCPBridgeComponentSnapshot& Component : Showcase.Components)
	{
		Components.push_back(S(Component.Name + TEXT("<") + Component.ParentComponentName));
	}
	EXPECT_EQ(Components, (std::vector<std::string>{"Body<", "CameraBoom<Body", "FollowCamera<CameraBoom", "Marker<Body"}));
	EXPECT_EQ(S(Showcase.Components[0].TemplatePath), "/Game/Blueprints/BP_Showcase.BP_Showcase_C:Body_GEN_VARIABLE");
	FString MeshText;
	Port->GetReflection().FindProperty(Showcase.Components[0].Template, TEXT("StaticMesh")).ExportText(MeshText);
	EXPECT_EQ(S(MeshText), "/Script/Engine.StaticMesh'/Engine/BasicShapes/Cube.Cube'");
	FString MaterialsText;
	Port->GetReflection().FindProperty(Showcase.Components[0].Template, TEXT("OverrideMaterials")).ExportText(MaterialsText);
	EXPECT_EQ(S(MaterialsText), "(\"/Script/Engine.Material'/Game/Materials/M_Rock.M_Rock'\")");

	// Only the interface functions with outputs became graphs.
	ASSERT_EQ(Showcase.ImplementedInterfaces.Num(), 1);
	EXPECT_EQ(S(Showcase.ImplementedInterfaces[0].InterfaceClassPath), "/Game/Interfaces/BPI_Interactable.BPI_Interactable_C");
	EXPECT_EQ(S(Showcase.ImplementedInterfaces[0].InterfaceBlueprintPath), "/Game/Interfaces/BPI_Interactable.BPI_Interactable");
	std::vector<std::string> InterfaceGraphs;
	for (const FString& GraphName : Showcase.ImplementedInterfaces[0].GraphNames)
	{
		InterfaceGraphs.push_back(S(GraphName));
	}
	EXPECT_EQ(InterfaceGraphs, (std::vector<std::string>{"GetInteractionText", "CanInteract"}));

	// The compiled class: variables as properties, functions with Blueprint parameter flags
	// (outputs are OutParm without ReturnParm).
	const FSimulatedType* Generated = Editor.FindTypeByPath(TEXT("/Game/Blueprints/BP_Showcase.BP_Showcase_C"));
	ASSERT_NE(Generated, nullptr);
	EXPECT_NE(Generated->FindPropertyIndex(TEXT("Health")), INDEX_NONE);
	EXPECT_NE(Generated->FindPropertyIndex(TEXT("Waypoints")), INDEX_NONE);
	const FSimulatedFunction* ApplyDamage = Generated->FindFunction(TEXT("ApplyDamage"));
	ASSERT_NE(ApplyDamage, nullptr);
	EXPECT_EQ(ParameterFlags(*ApplyDamage, TEXT("Amount")), Parm::Parm);
	EXPECT_EQ(ParameterFlags(*ApplyDamage, TEXT("bKilled")), Parm::Parm | Parm::OutParm);

	const FZorvekMCPBridgeBlueprintSnapshot NoParent = ReadBlueprint(*Port, TEXT("/Game/Blueprints/BP_NoParent.BP_NoParent"));
	EXPECT_TRUE(NoParent.ParentClassPath.IsEmpty());
	// BP_Hero keeps its place at the head of the project's registry entries (engine content comes
	// first) and is a real Blueprint now.
	const auto FirstGameAsset = std::find_if(Editor.GetRegistry().begin(), Editor.GetRegistry().end(), [](const FZorvekMCPBridgeAssetData& Asset)
	{
		return Asset.PackageName.StartsWith(TEXT("/Game/"));
	});
	ASSERT_NE(FirstGameAsset, Editor.GetRegistry().end());
	EXPECT_EQ(S(FirstGameAsset->ObjectPath), "/Game/Blueprints/BP_Hero.BP_Hero");
	EXPECT_EQ(ReadBlueprint(*Port, TEXT("/Game/Blueprints/BP_Hero.BP_Hero")).Variables.Num(), 2);
}

TEST(SimulatedBlueprintLibrary, BlueprintEntriesThatCannotBeBuiltFailTheFixture)
{
	const auto Load = [](const TCHAR* Blueprint)
	{
		return UECompatToUtf8(LoadError(FString(TEXT("\"assets\": [{\"package\": \"/Game/BP_Test\", \"blueprint\": ")) + Blueprint + TEXT("}]")));
	};
	EXPECT_EQ(Load(TEXT("{\"parent\": \"/Script/Engine.Actor\", \"graphs\": [{\"name\": \"EventGraph\", \"nodes\": [{\"id\": \"b\", \"kind\": \"branch\"}]}]}")), "");
	EXPECT_NE(Load(TEXT("{\"parent\": \"/Script/Engine.Nope\"}")).find("parent class /Script/Engine.Nope"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"parent\": \"/Script/Engine.Actor\", \"type\": \"Widget\"}")).find("unknown Blueprint type"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"parent\": \"/Script/Engine.Actor\", \"variables\": [{\"name\": \"X\", \"type\": \"map:FName\"}]}")).find("variable X"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"parent\": \"/Script/Engine.Actor\", \"graphs\": [{\"name\": \"EventGraph\", \"nodes\": [{\"id\": \"g\", \"kind\": \"get\", \"variable\": \"Nope\"}]}]}")).find("node g"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"parent\": \"/Script/Engine.Actor\", \"graphs\": [{\"name\": \"EventGraph\", \"nodes\": [{\"id\": \"b\", \"kind\": \"branch\"}], \"links\": [\"b.Condition -> b.then\"]}]}")).find("link 'b.Condition -> b.then'"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"parent\": \"/Script/Engine.Actor\", \"components\": [{\"name\": \"Arm\", \"class\": \"/Script/Engine.SpringArmComponent\", \"parent\": \"Body\"}]}")).find("component Arm"), std::string::npos);
	// A component class that is no actor component, and a template value that does not import.
	EXPECT_NE(Load(TEXT("{\"parent\": \"/Script/Engine.Actor\", \"components\": [{\"name\": \"M\", \"class\": \"/Script/Engine.StaticMesh\"}]}")).find("no actor component class"), std::string::npos);
	EXPECT_NE(Load(TEXT("{\"parent\": \"/Script/Engine.Actor\", \"components\": [{\"name\": \"C\", \"class\": \"/Script/Engine.CameraComponent\", \"values\": {\"NoSuchProperty\": \"1\"}}]}")).find("value NoSuchProperty"), std::string::npos);
}
