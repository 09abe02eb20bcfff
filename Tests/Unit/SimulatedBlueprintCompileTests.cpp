// The simulated compile against the engine's: what pruning leaves out, the faults users make with
// the log's texts (spacing quirks included), counters, a fresh log per compile, and the status.
#include "SimulatedBlueprintEditTestSupport.h"

using namespace ZorvekBlueprintEditTests;

using FTexts = std::vector<std::string>;

// unreal-behaviour-blueprints.md §4.1, §4.4
TEST(SimulatedBlueprintCompile, ConnectedChainCompilesCleanAndUnreachableFaultsArePruned)
{
	FEditFixture Fixture;
	FSimulatedNode* Event = Fixture.BeginPlay();
	FSimulatedNode* Branch = Fixture.Model->AddBranchNode(*Fixture.Graph, 300, 600);
	FSimulatedNode* Print = Fixture.Call(TEXT("/Script/Engine.KismetSystemLibrary"), TEXT("PrintString"), 600, 600);
	ASSERT_TRUE(Fixture.Link(Event, TEXT("then"), Branch, TEXT("execute")));
	ASSERT_TRUE(Fixture.Link(Branch, TEXT("then"), Print, TEXT("execute")));
	// Faults no event reaches: an impure cast without source, a member call of another class.
	Fixture.Model->AddCastNode(*Fixture.Graph, Fixture.Port->GetEditor().FindTypeByPath(TEXT("/Script/Engine.Pawn")), 0, 900);
	Fixture.Call(TEXT("/Script/Engine.Character"), TEXT("Jump"), 0, 1100);
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::Dirty);

	const FSimulatedCompilerResultsLog Log = Fixture.Compile();
	EXPECT_EQ(FEditFixture::Texts(Log), FTexts());
	EXPECT_EQ(Log.NumErrors, 0);
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);
	// The ghost events of a new Blueprint are disabled and never compiled.
	EXPECT_EQ(Fixture.Graph->Nodes.front()->EnabledState, ESimulatedNodeEnabledState::Disabled);
}

// unreal-behaviour-blueprints.md §2.4, §4.3, §4.5
TEST(SimulatedBlueprintCompile, ReachableCastWithoutSourceAndForeignSelfAreErrors)
{
	FEditFixture Fixture;
	FSimulatedNode* Event = Fixture.BeginPlay();
	FSimulatedNode* Cast = Fixture.Model->AddCastNode(*Fixture.Graph, Fixture.Port->GetEditor().FindTypeByPath(TEXT("/Script/Engine.Pawn")), 300, 600);
	FSimulatedNode* Jump = Fixture.Call(TEXT("/Script/Engine.Character"), TEXT("Jump"), 600, 600);
	// A member call of the Blueprint's own class hierarchy needs no target.
	FSimulatedNode* Destroy = Fixture.Call(TEXT("/Script/Engine.Actor"), TEXT("K2_DestroyActor"), 900, 600);
	ASSERT_TRUE(Fixture.Link(Event, TEXT("then"), Cast, TEXT("execute")));
	ASSERT_TRUE(Fixture.Link(Cast, TEXT("then"), Jump, TEXT("execute")));
	ASSERT_TRUE(Fixture.Link(Jump, TEXT("then"), Destroy, TEXT("execute")));

	const FSimulatedCompilerResultsLog Log = Fixture.Compile();
	EXPECT_EQ(FEditFixture::Texts(Log), (FTexts{
		"Error: The type of  Object  is undetermined.  Connect something to  Cast To Pawn  to imply a specific type.",
		"Error: This blueprint (self) is not a Character, therefore ' Target ' must have a connection.",
	})) << "in node order";
	EXPECT_EQ(Log.NumErrors, 2);
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::Error);

	// Wiring the cast's result into the target fixes both; the next compile starts a fresh log.
	FSimulatedNode* Pawn = Fixture.Call(TEXT("/Script/Engine.GameplayStatics"), TEXT("GetPlayerPawn"), 0, 800);
	ASSERT_TRUE(Fixture.Link(Pawn, TEXT("ReturnValue"), Cast, TEXT("Object")));
	FSimulatedNode* CharacterCast = Fixture.Model->AddCastNode(*Fixture.Graph, Fixture.Port->GetEditor().FindTypeByPath(TEXT("/Script/Engine.Character")), 0, 1000, true);
	ASSERT_TRUE(Fixture.Link(Pawn, TEXT("ReturnValue"), CharacterCast, TEXT("Object")));
	ASSERT_TRUE(Fixture.Link(CharacterCast, TEXT("AsCharacter"), Jump, TEXT("self")));
	const FSimulatedCompilerResultsLog Fixed = Fixture.Compile();
	EXPECT_EQ(FEditFixture::Texts(Fixed), FTexts());
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);
}

// unreal-behaviour-blueprints.md §2.9, §4.5
TEST(SimulatedBlueprintCompile, RemovedVariableWarnsErrsAndKeepsItsLinkAsOrphan)
{
	FEditFixture Fixture;
	Fixture.AddVariable(TEXT("Health"), Fixture.Type(TEXT("int")));
	Fixture.AddVariable(TEXT("Score"), Fixture.Type(TEXT("int")));
	FSimulatedNode* Event = Fixture.BeginPlay();
	FSimulatedNode* SetScore = Fixture.Model->AddVariableSetNode(*Fixture.Graph, TEXT("Score"), 300, 600);
	FSimulatedNode* GetHealth = Fixture.Model->AddVariableGetNode(*Fixture.Graph, TEXT("Health"), 0, 800);
	// A Get of the same variable that feeds nothing is pruned without a word.
	Fixture.Model->AddVariableGetNode(*Fixture.Graph, TEXT("Health"), 0, 1000);
	ASSERT_TRUE(Fixture.Link(Event, TEXT("then"), SetScore, TEXT("execute")));
	ASSERT_TRUE(Fixture.Link(GetHealth, TEXT("Health"), SetScore, TEXT("Score")));
	EXPECT_EQ(FEditFixture::Texts(Fixture.Compile()), FTexts());

	Fixture.Blueprint->NewVariables.erase(Fixture.Blueprint->NewVariables.begin());
	const FSimulatedCompilerResultsLog Log = Fixture.Compile();
	EXPECT_EQ(FEditFixture::Texts(Log), (FTexts{
		"Error: In use pin  Health  no longer exists on node  Get Health . Please refresh node or break links to remove pin.",
		"Warning: Could not find a variable named \"Health\" in 'BP_Edits_C'.\nMake sure 'BP_Edits_C' has been compiled for  Get Health ",
		"Error: The property associated with  Get Health  could not be found in '/Game/Tests/BP_Edits.BP_Edits_C'",
	}));
	EXPECT_EQ(Log.NumErrors, 2);
	EXPECT_EQ(Log.NumWarnings, 1);
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::Error);
	// The reconstruction left the linked value pin as an orphan; no new link may use it.
	FSimulatedPin& Orphan = FEditFixture::Pin(GetHealth, TEXT("Health"));
	EXPECT_TRUE(Orphan.bOrphanedPin);
	EXPECT_EQ(GetHealth->Pins.size(), 1u);
	EXPECT_EQ(S(Fixture.Model->CanCreateConnection(Orphan, FEditFixture::Pin(SetScore, TEXT("Score"))).Message), "Cannot make new connections to orphaned pin");
}

// unreal-behaviour-blueprints.md §3.2, §4.5
TEST(SimulatedBlueprintCompile, TypeChangedUnderALinkIsAnError)
{
	FEditFixture Fixture;
	Fixture.AddVariable(TEXT("Health"), Fixture.Type(TEXT("int")));
	Fixture.AddVariable(TEXT("Score"), Fixture.Type(TEXT("int")));
	FSimulatedNode* Event = Fixture.BeginPlay();
	FSimulatedNode* SetScore = Fixture.Model->AddVariableSetNode(*Fixture.Graph, TEXT("Score"), 300, 600);
	FSimulatedNode* GetHealth = Fixture.Model->AddVariableGetNode(*Fixture.Graph, TEXT("Health"), 0, 800);
	ASSERT_TRUE(Fixture.Link(Event, TEXT("then"), SetScore, TEXT("execute")));
	ASSERT_TRUE(Fixture.Link(GetHealth, TEXT("Health"), SetScore, TEXT("Score")));

	Fixture.Blueprint->NewVariables[0].VarType = Fixture.Type(TEXT("bool"));
	const FSimulatedCompilerResultsLog Log = Fixture.Compile();
	EXPECT_EQ(FEditFixture::Texts(Log), (FTexts{"Error: Can't connect pins  Health  and  Score : Boolean is not compatible with Integer."}));
	// The link survives the reconstruction on the retyped pin.
	EXPECT_FALSE(FEditFixture::Pin(GetHealth, TEXT("Health")).bOrphanedPin);
	EXPECT_EQ(S(FEditFixture::Pin(GetHealth, TEXT("Health")).PinType.PinCategory.ToString()), "bool");
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::Error);
}

// unreal-behaviour-blueprints.md §2.5, §4.3, §4.5
TEST(SimulatedBlueprintCompile, CallOfARemovedFunctionIsAnError)
{
	FEditFixture Fixture;
	FSimulatedGraph* Function = Fixture.Model->AddFunctionGraph(*Fixture.Blueprint, Fixture.Model->CreateNewGraph(*Fixture.Blueprint, TEXT("OpenDoor")));
	ASSERT_NE(Function, nullptr);
	Fixture.Model->Compile(*Fixture.Blueprint);
	FSimulatedNode* Event = Fixture.BeginPlay();
	FSimulatedNode* Call = Fixture.Model->AddCallFunctionNode(*Fixture.Graph, *Fixture.Blueprint->GeneratedClass->FindFunction(TEXT("OpenDoor")), 300, 600);
	ASSERT_TRUE(Fixture.Link(Event, TEXT("then"), Call, TEXT("execute")));
	EXPECT_EQ(FEditFixture::Texts(Fixture.Compile()), FTexts());

	Fixture.Blueprint->FunctionGraphs.pop_back();
	const FSimulatedCompilerResultsLog Log = Fixture.Compile();
	EXPECT_EQ(FEditFixture::Texts(Log), (FTexts{
		"Error: In use pin  Execute  no longer exists on node  Open Door . Please refresh node or break links to remove pin.",
		"Error: Could not find a function named \"OpenDoor\" in 'BP_Edits_C'.\nMake sure 'BP_Edits_C' has been compiled for  Open Door ",
	}));
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::Error);
}

// unreal-behaviour-blueprints.md §4.1, §4.3, §4.4
TEST(SimulatedBlueprintCompile, PrunedImpureSourceIsAWarning)
{
	FEditFixture Fixture;
	Fixture.AddVariable(TEXT("bOpen"), Fixture.Type(TEXT("bool")));
	FSimulatedNode* Event = Fixture.BeginPlay();
	FSimulatedNode* Branch = Fixture.Model->AddBranchNode(*Fixture.Graph, 300, 600);
	FSimulatedNode* SetOpen = Fixture.Model->AddVariableSetNode(*Fixture.Graph, TEXT("bOpen"), 0, 900);
	ASSERT_TRUE(Fixture.Link(Event, TEXT("then"), Branch, TEXT("execute")));
	ASSERT_TRUE(Fixture.Link(SetOpen, TEXT("Output_Get"), Branch, TEXT("Condition")));
	const FSimulatedCompilerResultsLog Log = Fixture.Compile();
	EXPECT_EQ(FEditFixture::Texts(Log),
		(FTexts{"Warning: Set bOpen  was pruned because its Exec pin is not connected, the connected value is not available and will instead be read as default"}));
	EXPECT_EQ(Log.NumWarnings, 1);
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::UpToDateWithWarnings);
}

// unreal-behaviour-blueprints.md §4.4, §4.5: graphs a user built correctly (every node kind of the
// sample project, wired through the node library) raise nothing.
TEST(SimulatedBlueprintCompile, SampleBlueprintsCompileWithoutMessages)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedBlueprints& Model = Port->GetEditor().GetBlueprints();
	int32 Compiled = 0;
	for (FSimulatedBlueprint* Blueprint : Model.GetBlueprints())
	{
		FSimulatedCompilerResultsLog Log;
		Model.Compile(*Blueprint, &Log);
		EXPECT_EQ(FEditFixture::Texts(Log), FTexts()) << S(Blueprint->GetName());
		++Compiled;
	}
	EXPECT_GE(Compiled, 5);
}

// unreal-behaviour-blueprints.md §1.1: a child's call of its parent's construction script keeps
// naming the parent's function through the child's own compiles.
TEST(SimulatedBlueprintCompile, ParentCallStaysBoundToTheParentsFunction)
{
	FEditFixture Fixture;
	FSimulatedEditor& Editor = Fixture.Port->GetEditor();
	FString Error;
	FSimulatedBlueprint* Child = Fixture.Model->CreateBlueprint(Editor.FindOrCreatePackage(TEXT("/Game/Tests/BP_Child")), TEXT("BP_Child"), Fixture.Blueprint->GeneratedClass,
		EZorvekMCPBridgeBlueprintType::Normal, Error);
	ASSERT_NE(Child, nullptr) << S(Error);
	FSimulatedNode* ParentCall = Child->FindGraph(TEXT("UserConstructionScript"))->FindNodeOfClass(TEXT("K2Node_CallParentFunction"));
	ASSERT_NE(ParentCall, nullptr);
	FSimulatedCompilerResultsLog Log;
	Fixture.Model->Compile(*Child, &Log);
	EXPECT_EQ(FEditFixture::Texts(Log), FTexts());
	ASSERT_NE(ParentCall->Function, nullptr);
	EXPECT_EQ(ParentCall->Function->Owner, Fixture.Blueprint->GeneratedClass);
	EXPECT_FALSE(FEditFixture::Pin(ParentCall, TEXT("execute")).LinkedTo.empty());
}
