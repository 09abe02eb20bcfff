// The simulated Blueprints against the engine facts the Blueprint tools depend on: what a new
// Blueprint holds for each parent kind, name uniqueness with the skeleton's lag, idempotent
// member variables, function and interface graphs, the construction script's root rule and
// the status after each kind of change.
#include "AssetTestSupport.h"
#include "SimulatedBlueprint.h"

using namespace ZorvekAssetTests;

namespace
{
	TSharedPtr<FSimulatedEditorPort> LoadBlueprintProject()
	{
		return LoadInlineProject(TEXT("\"include\": [\"BlueprintEngineTypes.json\"]"), nullptr, false);
	}

	FSimulatedBlueprint& MakeBlueprint(FSimulatedEditorPort& Port, const TCHAR* Name, const TCHAR* ParentPath,
		EZorvekMCPBridgeBlueprintType Type = EZorvekMCPBridgeBlueprintType::Normal)
	{
		FSimulatedEditor& Editor = Port.GetEditor();
		FString Error;
		FSimulatedBlueprint* Blueprint = Editor.GetBlueprints().CreateBlueprint(Editor.FindOrCreatePackage(FString(TEXT("/Game/Tests/")) + Name), Name,
			ParentPath ? Editor.FindTypeByPath(ParentPath) : nullptr, Type, Error);
		EXPECT_NE(Blueprint, nullptr) << S(Error);
		return *Blueprint;
	}

	FZorvekMCPBridgeBlueprintSnapshot Read(FSimulatedEditorPort& Port, const FSimulatedBlueprint& Blueprint)
	{
		FZorvekMCPBridgeBlueprintSnapshot Snapshot;
		EXPECT_TRUE(Port.GetBlueprints().ReadBlueprint(FSimulatedEditorPort::ToHandle(Blueprint.Object), Snapshot));
		return Snapshot;
	}

	const FZorvekMCPBridgeGraphSnapshot* FindGraph(const FZorvekMCPBridgeBlueprintSnapshot& Snapshot, const TCHAR* Name)
	{
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Snapshot.Graphs)
		{
			if (Graph.Name == Name)
			{
				return &Graph;
			}
		}
		return nullptr;
	}

	std::vector<std::string> GraphNames(const FZorvekMCPBridgeBlueprintSnapshot& Snapshot)
	{
		std::vector<std::string> Names;
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Snapshot.Graphs)
		{
			Names.push_back(S(Graph.Name));
		}
		return Names;
	}

	std::vector<std::string> PinNames(const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		std::vector<std::string> Names;
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
		{
			Names.push_back(S(Pin.Pin.PinName.ToString()));
		}
		return Names;
	}

	std::vector<std::string> ComponentTree(const FZorvekMCPBridgeBlueprintSnapshot& Snapshot)
	{
		std::vector<std::string> Tree;
		for (const FZorvekMCPBridgeComponentSnapshot& Component : Snapshot.Components)
		{
			Tree.push_back(S(Component.ParentComponentName + TEXT(">") + Component.Name));
		}
		return Tree;
	}

	FSimulatedSCSNode& AddComponent(FSimulatedBlueprints& Model, FSimulatedBlueprint& Blueprint, const TCHAR* ClassPath, const TCHAR* Name, FSimulatedSCSNode* Parent = nullptr)
	{
		FSimulatedSCSNode* Node = Model.CreateComponentNode(Blueprint, Model.GetEditor().FindTypeByPath(ClassPath), Name);
		EXPECT_NE(Node, nullptr) << S(ClassPath);
		if (Parent)
		{
			Model.AddChildComponentNode(Blueprint, *Parent, *Node);
		}
		else
		{
			Model.AddRootComponentNode(Blueprint, *Node);
		}
		return *Node;
	}

	FZorvekMCPBridgePinType PinTypeOf(const TCHAR* Category, const TCHAR* SubCategory = nullptr)
	{
		FZorvekMCPBridgePinType PinType;
		PinType.PinCategory = FName(Category);
		if (SubCategory)
		{
			PinType.PinSubCategory = FName(SubCategory);
		}
		return PinType;
	}
}

// unreal-behaviour-blueprints.md §1.1-1.3
TEST(SimulatedBlueprintModel, ActorBlueprintStartsWithTheEngineDefaults)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadBlueprintProject();
	const FSimulatedBlueprint& Blueprint = MakeBlueprint(*Port, TEXT("BP_Door"), TEXT("/Script/Engine.Actor"));
	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(*Port, Blueprint);

	EXPECT_EQ(Snapshot.Path, TEXT("/Game/Tests/BP_Door.BP_Door"));
	EXPECT_EQ(Snapshot.GeneratedClassPath, TEXT("/Game/Tests/BP_Door.BP_Door_C"));
	EXPECT_EQ(Snapshot.SkeletonClassPath, TEXT("/Game/Tests/BP_Door.SKEL_BP_Door_C"));
	EXPECT_EQ(Snapshot.Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);
	EXPECT_TRUE(Snapshot.bHasConstructionScript);
	EXPECT_EQ(GraphNames(Snapshot), (std::vector<std::string>{"UserConstructionScript", "EventGraph"}));

	// The generated class is a real class other tools load and subclass.
	FZorvekMCPBridgeTypeInfo ClassInfo;
	ASSERT_TRUE(Port->GetObjects().LoadClass(Snapshot.GeneratedClassPath, ClassInfo));
	EXPECT_EQ(ClassInfo.SuperPath, TEXT("/Script/Engine.Actor"));
	EXPECT_NE(ClassInfo.ClassFlags & ZorvekMCPBridgeClassFlags::CompiledFromBlueprint, 0u);
	EXPECT_TRUE(Port->GetObjects().IsA(Snapshot.Blueprint, TEXT("/Script/Engine.Blueprint")));

	const FZorvekMCPBridgeGraphSnapshot* Construction = FindGraph(Snapshot, TEXT("UserConstructionScript"));
	ASSERT_NE(Construction, nullptr);
	EXPECT_EQ(Construction->Kind, EZorvekMCPBridgeGraphKind::Function);
	ASSERT_EQ(Construction->Nodes.Num(), 1);
	EXPECT_EQ(Construction->Nodes[0].NodeClass, TEXT("K2Node_FunctionEntry"));
	EXPECT_EQ(Construction->Nodes[0].Title, TEXT("Construction Script"));
	EXPECT_EQ(PinNames(Construction->Nodes[0]), (std::vector<std::string>{"then"}));

	// Three ghost events at (0,0), (0,208), (0,416), disabled, with the ghost comment.
	const FZorvekMCPBridgeGraphSnapshot* EventGraph = FindGraph(Snapshot, TEXT("EventGraph"));
	ASSERT_NE(EventGraph, nullptr);
	ASSERT_EQ(EventGraph->Nodes.Num(), 3);
	const TCHAR* const Titles[] = {TEXT("Event BeginPlay"), TEXT("Event ActorBeginOverlap"), TEXT("Event Tick")};
	const TCHAR* const Events[] = {TEXT("ReceiveBeginPlay"), TEXT("ReceiveActorBeginOverlap"), TEXT("ReceiveTick")};
	for (int32 Index = 0; Index < 3; ++Index)
	{
		const FZorvekMCPBridgeNodeSnapshot& Event = EventGraph->Nodes[Index];
		EXPECT_EQ(Event.Title, Titles[Index]);
		EXPECT_EQ(Event.Data.EventName, Events[Index]);
		EXPECT_EQ(Event.Data.EventOwnerClassPath, TEXT("/Script/Engine.Actor"));
		EXPECT_TRUE(Event.Data.bOverrideFunction);
		EXPECT_FALSE(Event.bEnabled);
		EXPECT_EQ(Event.PosX, 0);
		EXPECT_EQ(Event.PosY, 208 * Index);
		EXPECT_EQ(Event.Comment, TEXT("This node is disabled and will not be called.\nDrag off pins to build functionality."));
		EXPECT_EQ(Event.NodeGuid.Len(), 32);
	}
	EXPECT_EQ(PinNames(EventGraph->Nodes[1]), (std::vector<std::string>{"OutputDelegate", "then", "OtherActor"}));
	ASSERT_EQ(EventGraph->Nodes[2].Pins.Num(), 3);
	EXPECT_EQ(EventGraph->Nodes[2].Pins[2].Pin.PinType.PinSubCategory, FName(TEXT("float")));

	EXPECT_EQ(ComponentTree(Snapshot), (std::vector<std::string>{">DefaultSceneRoot"}));
	EXPECT_EQ(Snapshot.Components[0].TemplatePath, TEXT("/Game/Tests/BP_Door.BP_Door_C:DefaultSceneRoot_GEN_VARIABLE"));
}

// unreal-behaviour-blueprints.md §1.2
TEST(SimulatedBlueprintModel, DefaultsDependOnTheParentAndTheType)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadBlueprintProject();

	// A Character's native capsule is the scene root: the default root exists but is not listed.
	const FZorvekMCPBridgeBlueprintSnapshot Character = Read(*Port, MakeBlueprint(*Port, TEXT("BP_Hero"), TEXT("/Script/Engine.Character")));
	EXPECT_TRUE(Character.bHasConstructionScript);
	EXPECT_TRUE(Character.Components.IsEmpty());
	EXPECT_EQ(FindGraph(Character, TEXT("EventGraph"))->Nodes.Num(), 3);
	const FZorvekMCPBridgeBlueprintSnapshot Pawn = Read(*Port, MakeBlueprint(*Port, TEXT("BP_Pawn"), TEXT("/Script/Engine.Pawn")));
	EXPECT_EQ(ComponentTree(Pawn), (std::vector<std::string>{">DefaultSceneRoot"}));

	// A plain object: an empty event graph, no construction script.
	const FZorvekMCPBridgeBlueprintSnapshot Object = Read(*Port, MakeBlueprint(*Port, TEXT("BP_Data"), TEXT("/Script/CoreUObject.Object")));
	EXPECT_FALSE(Object.bHasConstructionScript);
	EXPECT_EQ(GraphNames(Object), (std::vector<std::string>{"EventGraph"}));
	EXPECT_TRUE(Object.Graphs[0].Nodes.IsEmpty());

	// No parent at all still makes classes (on Object); the parent reads back empty.
	const FZorvekMCPBridgeBlueprintSnapshot Orphan = Read(*Port, MakeBlueprint(*Port, TEXT("BP_Orphan"), nullptr));
	EXPECT_TRUE(Orphan.ParentClassPath.IsEmpty());
	EXPECT_FALSE(Orphan.GeneratedClassPath.IsEmpty());

	// Interfaces and function libraries have no graphs at all.
	const FSimulatedBlueprint& Interface = MakeBlueprint(*Port, TEXT("BPI_Use"), TEXT("/Script/CoreUObject.Interface"), EZorvekMCPBridgeBlueprintType::Interface);
	const FZorvekMCPBridgeBlueprintSnapshot InterfaceSnapshot = Read(*Port, Interface);
	EXPECT_TRUE(InterfaceSnapshot.Graphs.IsEmpty());
	EXPECT_FALSE(InterfaceSnapshot.bHasConstructionScript);
	EXPECT_NE(Interface.GeneratedClass->ClassFlags & ZorvekMCPBridgeClassFlags::Interface, 0u);
	EXPECT_EQ(Port->GetBlueprints().GetGeneratedInterfaceClassPath(InterfaceSnapshot.Blueprint), TEXT("/Game/Tests/BPI_Use.BPI_Use_C"));
	EXPECT_TRUE(Port->GetBlueprints().GetGeneratedInterfaceClassPath(Character.Blueprint).IsEmpty());
	EXPECT_TRUE(Read(*Port, MakeBlueprint(*Port, TEXT("BFL_Tools"), TEXT("/Script/Engine.BlueprintFunctionLibrary"), EZorvekMCPBridgeBlueprintType::FunctionLibrary)).Graphs.IsEmpty());

	// A taken name is refused instead of the engine's assert, and nothing new appears.
	FString Error;
	FSimulatedEditor& Editor = Port->GetEditor();
	const int32 Objects = Editor.GetObjectCount();
	EXPECT_EQ(Editor.GetBlueprints().CreateBlueprint(Editor.FindOrCreatePackage(TEXT("/Game/Tests/BP_Hero")), TEXT("BP_Hero"), Editor.FindTypeByPath(TEXT("/Script/Engine.Actor")),
		EZorvekMCPBridgeBlueprintType::Normal, Error), nullptr);
	EXPECT_FALSE(Error.IsEmpty());
	EXPECT_EQ(Editor.GetObjectCount(), Objects);
}

// unreal-behaviour-blueprints.md §1.1 step 4 (parent construction script call)
TEST(SimulatedBlueprintModel, ChildOfABlueprintCallsItsParentsConstructionScript)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadBlueprintProject();
	const FSimulatedBlueprint& Parent = MakeBlueprint(*Port, TEXT("BP_Base"), TEXT("/Script/Engine.Actor"));
	const FZorvekMCPBridgeBlueprintSnapshot Child = Read(*Port, MakeBlueprint(*Port, TEXT("BP_Derived"), *Parent.GeneratedClass->GetPathName()));
	EXPECT_EQ(Child.ParentClassPath, TEXT("/Game/Tests/BP_Base.BP_Base_C"));
	const FZorvekMCPBridgeGraphSnapshot* Construction = FindGraph(Child, TEXT("UserConstructionScript"));
	ASSERT_NE(Construction, nullptr);
	ASSERT_EQ(Construction->Nodes.Num(), 2);
	const FZorvekMCPBridgeNodeSnapshot& Call = Construction->Nodes[1];
	EXPECT_EQ(Call.NodeClass, TEXT("K2Node_CallParentFunction"));
	EXPECT_EQ(Call.Kind, EZorvekMCPBridgeNodeKind::FunctionCall);
	EXPECT_EQ(Call.PosX, 200);
	ASSERT_EQ(Construction->Nodes[0].Pins[0].LinkedTo.Num(), 1);
	EXPECT_EQ(Construction->Nodes[0].Pins[0].LinkedTo[0].NodeGuid, Call.NodeGuid);
	EXPECT_EQ(Construction->Nodes[0].Pins[0].LinkedTo[0].PinName, FName(TEXT("execute")));
}

// unreal-behaviour-blueprints.md §5.2
TEST(SimulatedBlueprintModel, GraphNamesAreUniqueAgainstWhatTheSkeletonHasSeen)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadBlueprintProject();
	FSimulatedBlueprint& Blueprint = MakeBlueprint(*Port, TEXT("BP_Names"), TEXT("/Script/Engine.Actor"));
	FSimulatedBlueprints& Model = Port->GetEditor().GetBlueprints();

	// Graphs (any case), parent functions and properties, implemented events.
	EXPECT_FALSE(Model.IsGraphNameUnique(Blueprint, TEXT("eventgraph")));
	EXPECT_FALSE(Model.IsGraphNameUnique(Blueprint, TEXT("K2_SetActorLocation")));
	EXPECT_FALSE(Model.IsGraphNameUnique(Blueprint, TEXT("Tags")));
	EXPECT_FALSE(Model.IsGraphNameUnique(Blueprint, TEXT("ReceiveTick")));
	EXPECT_TRUE(Model.IsGraphNameUnique(Blueprint, TEXT("OpenDoor")));

	// A custom event takes its name at once.
	Model.AddCustomEventNode(*Blueprint.UbergraphPages[0], TEXT("OpenDoor"), 0, 600);
	EXPECT_FALSE(Model.IsGraphNameUnique(Blueprint, TEXT("OpenDoor")));

	// A component added without a structural change is not on the skeleton yet.
	AddComponent(Model, Blueprint, TEXT("/Script/Engine.StaticMeshComponent"), TEXT("Frame"));
	EXPECT_TRUE(Model.IsGraphNameUnique(Blueprint, TEXT("Frame")));
	Model.MarkStructurallyModified(Blueprint);
	EXPECT_FALSE(Model.IsGraphNameUnique(Blueprint, TEXT("Frame")));

	// AddMemberVariable regenerates the skeleton itself.
	ASSERT_TRUE(Model.AddMemberVariable(Blueprint, FName(TEXT("Speed")), PinTypeOf(TEXT("real"), TEXT("double")), TEXT("")));
	EXPECT_FALSE(Model.IsGraphNameUnique(Blueprint, TEXT("speed")));
	// A set variable has no simulated property but still counts as a member.
	FZorvekMCPBridgePinType NameSet = PinTypeOf(TEXT("name"));
	NameSet.ContainerType = EZorvekMCPBridgePinContainerType::Set;
	ASSERT_TRUE(Model.AddMemberVariable(Blueprint, FName(TEXT("Visited")), NameSet, TEXT("")));
	EXPECT_FALSE(Model.IsGraphNameUnique(Blueprint, TEXT("Visited")));
}

// unreal-behaviour-blueprints.md §5.3, §4.2, §5.1
TEST(SimulatedBlueprintModel, MemberVariablesAreAddedOnceAndReachTheClassOnCompile)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadBlueprintProject();
	FSimulatedBlueprint& Blueprint = MakeBlueprint(*Port, TEXT("BP_Vars"), TEXT("/Script/Engine.Actor"));
	FSimulatedBlueprints& Model = Port->GetEditor().GetBlueprints();

	FZorvekMCPBridgePinType BoolType = PinTypeOf(TEXT("bool"));
	BoolType.bIsReference = true;
	ASSERT_TRUE(Model.AddMemberVariable(Blueprint, FName(TEXT("bIsOpen")), BoolType, TEXT("true")));
	EXPECT_EQ(Blueprint.Status, EZorvekMCPBridgeBlueprintStatus::Dirty);
	EXPECT_FALSE(Model.AddMemberVariable(Blueprint, FName(TEXT("bIsOpen")), BoolType, TEXT("false")));
	EXPECT_FALSE(Model.AddMemberVariable(Blueprint, FName(TEXT("BISOPEN")), PinTypeOf(TEXT("int")), TEXT("")));
	EXPECT_FALSE(Model.AddMemberVariable(Blueprint, FName(TEXT("self")), BoolType, TEXT("")));
	EXPECT_FALSE(Model.AddMemberVariable(Blueprint, FName(TEXT("Tags")), BoolType, TEXT("")));
	ASSERT_TRUE(Model.AddMemberVariable(Blueprint, FName(TEXT("Label")), PinTypeOf(TEXT("string")), TEXT("")));

	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(*Port, Blueprint);
	ASSERT_EQ(Snapshot.Variables.Num(), 2);
	const FZorvekMCPBridgeVariableSnapshot& IsOpen = Snapshot.Variables[0];
	EXPECT_EQ(IsOpen.FriendlyName, TEXT("Is Open"));
	EXPECT_EQ(IsOpen.Category, TEXT("Default"));
	EXPECT_EQ(IsOpen.DefaultValue, TEXT("true"));
	EXPECT_FALSE(IsOpen.VarType.bIsReference);
	EXPECT_EQ(IsOpen.PropertyFlags, ZorvekMCPBridgePropertyFlags::Edit | ZorvekMCPBridgePropertyFlags::BlueprintVisible | ZorvekMCPBridgePropertyFlags::DisableEditOnInstance);
	EXPECT_EQ(IsOpen.VarGuid.Len(), 32);
	// Only the skeleton has it until the Blueprint compiles.
	EXPECT_FALSE(IsOpen.bHasClassDefaultValue);
	EXPECT_NE(Blueprint.SkeletonClass->FindPropertyIndex(TEXT("bIsOpen")), INDEX_NONE);
	EXPECT_EQ(Blueprint.GeneratedClass->FindPropertyIndex(TEXT("bIsOpen")), INDEX_NONE);
	EXPECT_EQ(Blueprint.NewVariables[1].MetaData.FindRef(TEXT("MultiLine")), TEXT("true"));

	Model.SetVariableCategory(Blueprint, FName(TEXT("Label")), TEXT(""));
	EXPECT_EQ(Blueprint.NewVariables[1].Category, TEXT("Default"));
	Model.SetVariableCategory(Blueprint, FName(TEXT("Label")), TEXT("Door"));
	EXPECT_EQ(Blueprint.NewVariables[1].Category, TEXT("Door"));

	Model.Compile(Blueprint);
	EXPECT_EQ(Blueprint.Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);
	const FZorvekMCPBridgeBlueprintSnapshot Compiled = Read(*Port, Blueprint);
	EXPECT_TRUE(Compiled.Variables[0].bHasClassDefaultValue);
	EXPECT_EQ(Compiled.Variables[0].ClassDefaultValue, TEXT("True"));
	// The default object is reflected like any object.
	EXPECT_TRUE(Port->GetReflection().FindProperty(FSimulatedEditorPort::ToHandle(Blueprint.DefaultObject), TEXT("Label")).IsValid());
}

// unreal-behaviour-blueprints.md §4.2, §5.1
TEST(SimulatedBlueprintModel, StatusFollowsModificationsAndCompiles)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadBlueprintProject();
	FSimulatedBlueprint& Blueprint = MakeBlueprint(*Port, TEXT("BP_Status"), TEXT("/Script/Engine.Actor"));
	FSimulatedBlueprints& Model = Port->GetEditor().GetBlueprints();
	// A node added by code without a Mark call leaves the status alone.
	Model.AddBranchNode(*Blueprint.UbergraphPages[0], 300, 0);
	EXPECT_EQ(Blueprint.Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);
	Model.MarkModified(Blueprint);
	EXPECT_EQ(Blueprint.Status, EZorvekMCPBridgeBlueprintStatus::Dirty);
	Model.Compile(Blueprint);
	EXPECT_EQ(Blueprint.Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);

	// A structural change rebuilds the skeleton only.
	Blueprint.NewVariables.push_back(FSimulatedVariable());
	Blueprint.NewVariables.back().VarName = FName(TEXT("Later"));
	Blueprint.NewVariables.back().VarType = PinTypeOf(TEXT("int"));
	Blueprint.NewVariables.back().PropertyFlags = ZorvekMCPBridgePropertyFlags::BlueprintVisible;
	Model.MarkStructurallyModified(Blueprint);
	EXPECT_EQ(Blueprint.Status, EZorvekMCPBridgeBlueprintStatus::Dirty);
	EXPECT_NE(Blueprint.SkeletonClass->FindPropertyIndex(TEXT("Later")), INDEX_NONE);
	EXPECT_EQ(Blueprint.GeneratedClass->FindPropertyIndex(TEXT("Later")), INDEX_NONE);
}

// unreal-behaviour-blueprints.md §5.1: MarkBlueprintAsModified dirties the package; creating a
// Blueprint leaves that to the caller (§1.1 step 8), and a refused edit dirties nothing.
TEST(SimulatedBlueprintModel, PortEditsDirtyThePackageOnlyWhenTheyChangeSomething)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadBlueprintProject();
	IZorvekMCPBridgeBlueprints& Blueprints = Port->GetBlueprints();
	const FZorvekMCPBridgeObjectHandle Package = FSimulatedEditorPort::ToHandle(Port->GetEditor().FindOrCreatePackage(TEXT("/Game/Tests/BP_Dirty")));
	const FZorvekMCPBridgeObjectHandle Blueprint = Blueprints.CreateBlueprint(Package, TEXT("BP_Dirty"), TEXT("/Script/Engine.Actor"), EZorvekMCPBridgeBlueprintType::Normal);
	ASSERT_TRUE(Blueprint.IsValid());
	EXPECT_FALSE(Port->GetSimulatedAssetAuthoring().IsPackageDirty(TEXT("/Game/Tests/BP_Dirty")));
	EXPECT_FALSE(Blueprints.CreateBlueprint(Package, TEXT("BP_Other"), TEXT("/Script/Engine.NoSuchClass"), EZorvekMCPBridgeBlueprintType::Normal).IsValid());

	FZorvekMCPBridgePinType IntType = PinTypeOf(TEXT("int"));
	EXPECT_FALSE(Blueprints.AddMemberVariable(Blueprint, FName(TEXT("Tags")), IntType, TEXT("")));
	EXPECT_FALSE(Port->GetSimulatedAssetAuthoring().IsPackageDirty(TEXT("/Game/Tests/BP_Dirty")));
	EXPECT_TRUE(Blueprints.AddMemberVariable(Blueprint, FName(TEXT("Count")), IntType, TEXT("")));
	EXPECT_TRUE(Port->GetSimulatedAssetAuthoring().IsPackageDirty(TEXT("/Game/Tests/BP_Dirty")));
}

// unreal-behaviour-blueprints.md §2.8, §5.3
TEST(SimulatedBlueprintModel, FunctionGraphsGetTheirTerminatorsAndUserPins)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadBlueprintProject();
	FSimulatedBlueprint& Blueprint = MakeBlueprint(*Port, TEXT("BP_Funcs"), TEXT("/Script/Engine.Actor"));
	FSimulatedBlueprints& Model = Port->GetEditor().GetBlueprints();

	// A bare function graph has only its entry.
	FSimulatedGraph* Bare = Model.AddFunctionGraph(Blueprint, Model.CreateNewGraph(Blueprint, TEXT("Reset")));
	ASSERT_NE(Bare, nullptr);
	ASSERT_EQ(Bare->Nodes.size(), 1u);
	EXPECT_EQ(Bare->FunctionFlags, SimulatedFunctionFlags::BlueprintCallable | SimulatedFunctionFlags::BlueprintEvent | SimulatedFunctionFlags::Public);

	FBlueprintParamSpec Amount;
	Amount.Name = FName(TEXT("Amount"));
	Amount.PinType = PinTypeOf(TEXT("int"));
	FBlueprintParamSpec Done;
	Done.Name = FName(TEXT("Done"));
	Done.PinType = PinTypeOf(TEXT("bool"));
	const FZorvekMCPBridgeFunctionGraphResult Result = Port->GetBlueprints().CreateFunctionGraph(FSimulatedEditorPort::ToHandle(Blueprint.Object), TEXT("ApplyDamage"), {Amount, Amount}, {Done});
	EXPECT_EQ(Result.Failure, EZorvekMCPBridgeFunctionGraphFailure::None);
	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(*Port, Blueprint);
	const FZorvekMCPBridgeGraphSnapshot* Graph = FindGraph(Snapshot, TEXT("ApplyDamage"));
	ASSERT_NE(Graph, nullptr);
	ASSERT_EQ(Graph->Nodes.Num(), 2);
	EXPECT_EQ(Graph->Nodes[0].Title, TEXT("Apply Damage"));
	// A second pin of one name gets a unique one.
	EXPECT_EQ(PinNames(Graph->Nodes[0]), (std::vector<std::string>{"then", "Amount", "Amount2"}));
	EXPECT_EQ(Graph->Nodes[0].Data.UserPins.Num(), 2);
	EXPECT_EQ(Graph->Nodes[1].Title, TEXT("Return Node"));
	EXPECT_EQ(PinNames(Graph->Nodes[1]), (std::vector<std::string>{"execute", "Done"}));
	EXPECT_EQ(Graph->Nodes[1].Pins[1].Pin.Direction, EZorvekMCPBridgePinDirection::Input);

	// After the structural change the skeleton has the function with its parameters.
	Model.MarkStructurallyModified(Blueprint);
	const FSimulatedFunction* Function = Blueprint.SkeletonClass->FindFunction(TEXT("ApplyDamage"));
	ASSERT_NE(Function, nullptr);
	ASSERT_EQ(Function->Parameters.size(), 3u);
	EXPECT_NE(Function->Parameters[2]->Flags & SimulatedParameterFlags::OutParm, 0u);
	EXPECT_FALSE(Model.IsGraphNameUnique(Blueprint, TEXT("ApplyDamage")));
}

// unreal-behaviour-blueprints.md §5.4
TEST(SimulatedBlueprintModel, InterfacesGetGraphsForFunctionsWithOutputsAndEventsOtherwise)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadBlueprintProject();
	FSimulatedBlueprints& Model = Port->GetEditor().GetBlueprints();
	FSimulatedBlueprint& Interface = MakeBlueprint(*Port, TEXT("BPI_Door"), TEXT("/Script/CoreUObject.Interface"), EZorvekMCPBridgeBlueprintType::Interface);
	Model.AddFunctionGraph(Interface, Model.CreateNewGraph(Interface, TEXT("Knock")));
	FSimulatedGraph* CanOpen = Model.AddFunctionGraph(Interface, Model.CreateNewGraph(Interface, TEXT("CanOpen")));
	Model.CreateUserDefinedPin(*Model.FindOrCreateFunctionResultNode(*CanOpen), FName(TEXT("bResult")), PinTypeOf(TEXT("bool")), EZorvekMCPBridgePinDirection::Input);
	Model.Compile(Interface);
	const FString InterfacePath = Interface.GeneratedClass->GetPathName();

	TArray<FZorvekMCPBridgeInterfaceFunction> Functions;
	ASSERT_TRUE(Port->GetBlueprints().GetInterfaceFunctions(InterfacePath, Functions));
	ASSERT_EQ(Functions.Num(), 2);
	EXPECT_EQ(Functions[0].Name, TEXT("Knock"));
	EXPECT_TRUE(Functions[0].bImplementedAsEvent);
	EXPECT_FALSE(Functions[1].bImplementedAsEvent);
	EXPECT_FALSE(Port->GetBlueprints().GetInterfaceFunctions(TEXT("/Script/Engine.Actor"), Functions));

	FSimulatedBlueprint& Door = MakeBlueprint(*Port, TEXT("BP_Door"), TEXT("/Script/Engine.Actor"));
	const FZorvekMCPBridgeObjectHandle DoorHandle = FSimulatedEditorPort::ToHandle(Door.Object);
	ASSERT_TRUE(Port->GetBlueprints().ImplementInterface(DoorHandle, InterfacePath));
	FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(*Port, Door);
	ASSERT_EQ(Snapshot.ImplementedInterfaces.Num(), 1);
	EXPECT_EQ(Snapshot.ImplementedInterfaces[0].InterfaceBlueprintPath, TEXT("/Game/Tests/BPI_Door.BPI_Door"));
	EXPECT_EQ(ToStd(Snapshot.ImplementedInterfaces[0].GraphNames), (std::vector<std::string>{"CanOpen"}));
	// The interface graph comes last, with the signature's pins on entry and result.
	const FZorvekMCPBridgeGraphSnapshot& Implementation = Snapshot.Graphs.Last();
	EXPECT_EQ(Implementation.Kind, EZorvekMCPBridgeGraphKind::InterfaceImplementation);
	EXPECT_EQ(Implementation.InterfaceClassPath, InterfacePath);
	ASSERT_EQ(Implementation.Nodes.Num(), 2);
	EXPECT_EQ(PinNames(Implementation.Nodes[1]), (std::vector<std::string>{"execute", "bResult"}));

	// The event is placed as an event node titled with its interface.
	const FString EventGuid = Port->GetBlueprints().AddInterfaceEvent(DoorHandle, TEXT("EventGraph"), InterfacePath, TEXT("Knock"), 0, 700);
	const FZorvekMCPBridgeNodeSnapshot Knock = FindGraph(Read(*Port, Door), TEXT("EventGraph"))->Nodes.Last();
	EXPECT_EQ(Knock.NodeGuid, EventGuid);
	EXPECT_EQ(Knock.Title, TEXT("Event Knock\nFrom BPI Door"));
	EXPECT_EQ(Knock.Data.EventOwnerClassPath, InterfacePath);

	// A second time is refused with the engine's notification, and nothing changes.
	EXPECT_FALSE(Port->GetBlueprints().ImplementInterface(DoorHandle, InterfacePath));
	EXPECT_EQ(Port->GetSimulatedBlueprints().GetNotifications().Last(), TEXT("Blueprint 'BP_Door' already implements the interface 'BPI_Door_C'"));
	EXPECT_EQ(Door.ImplementedInterfaces.size(), 1u);

	// A graph that already bears a function's name blocks the whole interface.
	FSimulatedBlueprint& Clash = MakeBlueprint(*Port, TEXT("BP_Clash"), TEXT("/Script/Engine.Actor"));
	Model.AddFunctionGraph(Clash, Model.CreateNewGraph(Clash, TEXT("CanOpen")));
	const size_t GraphCount = Clash.GetAllGraphs().size();
	EXPECT_FALSE(Port->GetBlueprints().ImplementInterface(FSimulatedEditorPort::ToHandle(Clash.Object), InterfacePath));
	EXPECT_EQ(Port->GetSimulatedBlueprints().GetNotifications().Last(),
		TEXT("Blueprint 'BP_Clash' has a function or graph which conflicts with function 'CanOpen' in interface 'BPI_Door_C'"));
	EXPECT_TRUE(Clash.ImplementedInterfaces.empty());
	EXPECT_EQ(Clash.GetAllGraphs().size(), GraphCount);
}

// unreal-behaviour-blueprints.md §6.1-6.2
TEST(SimulatedBlueprintModel, ConstructionScriptKeepsTheDefaultRootRule)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadBlueprintProject();
	FSimulatedBlueprint& Blueprint = MakeBlueprint(*Port, TEXT("BP_Lamp"), TEXT("/Script/Engine.Actor"));
	FSimulatedBlueprints& Model = Port->GetEditor().GetBlueprints();

	// A non-scene component keeps the default root; a child under it too.
	AddComponent(Model, Blueprint, TEXT("/Script/Engine.CharacterMovementComponent"), TEXT("Movement"));
	AddComponent(Model, Blueprint, TEXT("/Script/Engine.ArrowComponent"), TEXT("Arrow"), Blueprint.ConstructionScript->DefaultSceneRootNode);
	EXPECT_EQ(ComponentTree(Read(*Port, Blueprint)), (std::vector<std::string>{">DefaultSceneRoot", "DefaultSceneRoot>Arrow", ">Movement"}));

	// The first scene root replaces it and takes over its children.
	FSimulatedSCSNode& Mesh = AddComponent(Model, Blueprint, TEXT("/Script/Engine.StaticMeshComponent"), TEXT(""));
	EXPECT_EQ(Mesh.VariableName, TEXT("StaticMesh"));
	FSimulatedSCSNode& Arm = AddComponent(Model, Blueprint, TEXT("/Script/Engine.SpringArmComponent"), TEXT("Arm"), &Mesh);
	AddComponent(Model, Blueprint, TEXT("/Script/Engine.CameraComponent"), TEXT("Camera"), &Arm);
	FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(*Port, Blueprint);
	EXPECT_EQ(ComponentTree(Snapshot), (std::vector<std::string>{">Movement", ">StaticMesh", "StaticMesh>Arrow", "StaticMesh>Arm", "Arm>Camera"}));

	// Templates are real objects of the component class, reflected like any object.
	const FZorvekMCPBridgeComponentSnapshot& MeshSnapshot = Snapshot.Components[1];
	EXPECT_EQ(MeshSnapshot.TemplatePath, TEXT("/Game/Tests/BP_Lamp.BP_Lamp_C:StaticMesh_GEN_VARIABLE"));
	EXPECT_TRUE(Port->GetObjects().IsA(MeshSnapshot.Template, TEXT("/Script/Engine.StaticMeshComponent")));
	EXPECT_EQ(Port->GetObjects().FindObject(MeshSnapshot.TemplatePath), MeshSnapshot.Template);

	// Names count on from trailing digits; taken names are skipped.
	EXPECT_EQ(Model.GenerateNewComponentName(Blueprint, *Mesh.ComponentClass, TEXT("")), TEXT("StaticMesh1"));
	EXPECT_EQ(Model.GenerateNewComponentName(Blueprint, *Mesh.ComponentClass, TEXT("Arm")), TEXT("Arm1"));
	EXPECT_EQ(Model.GenerateNewComponentName(Blueprint, *Mesh.ComponentClass, TEXT("Camera7")), TEXT("Camera7"));
	AddComponent(Model, Blueprint, TEXT("/Script/Engine.StaticMeshComponent"), TEXT("Arm1"), &Mesh);
	EXPECT_EQ(Model.GenerateNewComponentName(Blueprint, *Mesh.ComponentClass, TEXT("Arm1")), TEXT("Arm2"));
	// Only actor components make nodes.
	EXPECT_EQ(Model.CreateComponentNode(Blueprint, Port->GetEditor().FindTypeByPath(TEXT("/Script/Engine.Actor")), TEXT("X")), nullptr);

	// Removing a node takes its children; removing the scene root brings the default root back.
	Model.RemoveComponentNode(Blueprint, Arm);
	EXPECT_EQ(ComponentTree(Read(*Port, Blueprint)), (std::vector<std::string>{">Movement", ">StaticMesh", "StaticMesh>Arrow", "StaticMesh>Arm1"}));
	EXPECT_FALSE(Port->GetObjects().FindObject(TEXT("/Game/Tests/BP_Lamp.BP_Lamp_C:Camera_GEN_VARIABLE")).IsValid());
	Model.RemoveComponentNode(Blueprint, Mesh);
	EXPECT_EQ(ComponentTree(Read(*Port, Blueprint)), (std::vector<std::string>{">Movement", ">DefaultSceneRoot"}));
}

// The GUIDs the model hands out are reproducible per editor (tests compare them).
TEST(SimulatedBlueprintModel, GuidsAreDistinctAndReproducible)
{
	const TSharedPtr<FSimulatedEditorPort> First = LoadBlueprintProject();
	const TSharedPtr<FSimulatedEditorPort> Second = LoadBlueprintProject();
	const FString A = First->GetEditor().GetBlueprints().NewGuid();
	EXPECT_EQ(A, Second->GetEditor().GetBlueprints().NewGuid());
	EXPECT_NE(A, First->GetEditor().GetBlueprints().NewGuid());
	EXPECT_EQ(A.Len(), 32);
	for (int32 Index = 0; Index < A.Len(); ++Index)
	{
		EXPECT_GE(GetHexDigitValue(A[Index]), 0);
	}
}

// unreal-behaviour-blueprints.md §1.3 (parent call ghosts), §4.1 (the compile fills the class),
// §6.3-style instances: objects of a Blueprint class keep their values when it recompiles.
TEST(SimulatedBlueprintModel, CompiledClassesServeSubclassesAndInstances)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadBlueprintProject();
	FSimulatedEditor& Editor = Port->GetEditor();
	FSimulatedBlueprints& Model = Editor.GetBlueprints();
	FSimulatedBlueprint& Base = MakeBlueprint(*Port, TEXT("BP_Base"), TEXT("/Script/Engine.Actor"));
	ASSERT_TRUE(Model.AddMemberVariable(Base, FName(TEXT("Health")), PinTypeOf(TEXT("int")), TEXT("5")));
	Model.AddCustomEventNode(*Base.UbergraphPages[0], TEXT("Ping"), 0, 700);
	// The user places BeginPlay: the ghost goes and an enabled node implements the event.
	FSimulatedNode* Ghost = Base.UbergraphPages[0]->Nodes[0].get();
	const FSimulatedFunction* BeginPlay = Base.ParentClass->FindFunction(TEXT("ReceiveBeginPlay"));
	ASSERT_NE(BeginPlay, nullptr);
	Model.RemoveNode(*Base.UbergraphPages[0], *Ghost);
	Model.AddEventNode(*Base.UbergraphPages[0], *BeginPlay, 0, 0);
	Model.Compile(Base);

	// Variables, custom events and implemented events are members of the generated class.
	EXPECT_NE(Base.GeneratedClass->FindPropertyIndex(TEXT("Health")), INDEX_NONE);
	const FSimulatedFunction* Ping = Base.GeneratedClass->FindFunction(TEXT("Ping"));
	ASSERT_NE(Ping, nullptr);
	EXPECT_EQ(Ping->Owner, Base.GeneratedClass);
	EXPECT_EQ(Base.GeneratedClass->FindFunction(TEXT("ReceiveBeginPlay"))->Owner, Base.GeneratedClass);

	// An instance keeps its value through a recompile that adds a member.
	FString Error;
	FSimulatedObject* Instance = Editor.CreateObject(Base.GeneratedClass, Editor.FindOrCreatePackage(TEXT("/Game/Maps/Test")), TEXT("BP_Base_0"), Error);
	ASSERT_NE(Instance, nullptr) << S(Error);
	ASSERT_TRUE(Editor.SetPropertyText(Instance, TEXT("Health"), TEXT("42"), Error)) << S(Error);
	ASSERT_TRUE(Model.AddMemberVariable(Base, FName(TEXT("Armor")), PinTypeOf(TEXT("int")), TEXT("")));
	Model.Compile(Base);
	FZorvekMCPBridgePropertyCursor Health = Port->GetReflection().FindProperty(FSimulatedEditorPort::ToHandle(Instance), TEXT("Health"));
	FString HealthText;
	ASSERT_TRUE(Port->GetReflection().ExportText(Health, HealthText));
	EXPECT_EQ(HealthText, TEXT("42"));
	EXPECT_TRUE(Port->GetReflection().FindProperty(FSimulatedEditorPort::ToHandle(Instance), TEXT("Armor")).IsValid());

	// A child Blueprint sees the parent's members and gets a ghost call of the parent's BeginPlay.
	FSimulatedBlueprint& Child = MakeBlueprint(*Port, TEXT("BP_Child"), *Base.GeneratedClass->GetPathName());
	EXPECT_NE(Child.GeneratedClass->FindPropertyIndex(TEXT("Health")), INDEX_NONE);
	EXPECT_FALSE(Model.AddMemberVariable(Child, FName(TEXT("Health")), PinTypeOf(TEXT("int")), TEXT("")));
	const FZorvekMCPBridgeBlueprintSnapshot ChildSnapshot = Read(*Port, Child);
	const FZorvekMCPBridgeGraphSnapshot* Events = FindGraph(ChildSnapshot, TEXT("EventGraph"));
	ASSERT_NE(Events, nullptr);
	ASSERT_EQ(Events->Nodes.Num(), 4);
	EXPECT_EQ(Events->Nodes[0].Data.EventOwnerClassPath, TEXT("/Script/Engine.Actor"));
	EXPECT_EQ(Events->Nodes[1].NodeClass, TEXT("K2Node_CallParentFunction"));
	EXPECT_FALSE(Events->Nodes[1].bEnabled);
	EXPECT_EQ(Events->Nodes[1].PosX, 200);
	ASSERT_EQ(Events->Nodes[0].Pins[1].LinkedTo.Num(), 1);
	EXPECT_EQ(Events->Nodes[0].Pins[1].LinkedTo[0].NodeGuid, Events->Nodes[1].NodeGuid);
}
