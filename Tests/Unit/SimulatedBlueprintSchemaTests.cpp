// The simulated K2 schema against the engine's verdicts: the order of the connection checks and
// their texts, one-link pins breaking their old link, conversion nodes, the cast's veto, and pin
// default validation.
#include "SimulatedBlueprintEditTestSupport.h"

using namespace ZorvekBlueprintEditTests;

namespace
{
	std::string Verdict(const FSimulatedConnectionResponse& Response)
	{
		return std::to_string(static_cast<int>(Response.Response)) + " " + S(Response.Message);
	}
}

// unreal-behaviour-blueprints.md §3.2, §3.3, §3.6
TEST(SimulatedBlueprintSchema, RefusalsComeInTheEnginesOrderWithItsTexts)
{
	FEditFixture Fixture;
	FSimulatedNode* Branch = Fixture.Model->AddBranchNode(*Fixture.Graph, 0, 0);
	FSimulatedNode* Other = Fixture.Model->AddBranchNode(*Fixture.Graph, 300, 0);
	FSimulatedNode* Add = Fixture.Call(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Add_IntInt"));
	FSimulatedNode* Less = Fixture.Call(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Less_DoubleDouble"));
	FSimulatedNode* Length = Fixture.Call(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("VSize"));
	FSimulatedNode* Pawn = Fixture.Call(TEXT("/Script/Engine.GameplayStatics"), TEXT("GetPlayerPawn"));
	FSimulatedNode* Controller = Fixture.Call(TEXT("/Script/Engine.GameplayStatics"), TEXT("GetPlayerController"));
	FSimulatedNode* Jump = Fixture.Call(TEXT("/Script/Engine.Character"), TEXT("Jump"));
	FSimulatedNode* AllActors = Fixture.Call(TEXT("/Script/Engine.GameplayStatics"), TEXT("GetAllActorsOfClass"));
	FSimulatedBlueprints& Model = *Fixture.Model;

	// Same node is checked before the directions; two inputs are refused by direction.
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Branch, TEXT("then")), FEditFixture::Pin(Branch, TEXT("execute")))), "1 Both are on the same node");
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Branch, TEXT("execute")), FEditFixture::Pin(Other, TEXT("execute")))), "1 Directions are not compatible");
	// Exec and data never mix; the types are named in the order the pins were passed.
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Branch, TEXT("then")), FEditFixture::Pin(Other, TEXT("Condition")))), "1 Exec is not compatible with Boolean.");
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Other, TEXT("Condition")), FEditFixture::Pin(Branch, TEXT("then")))), "1 Boolean is not compatible with Exec.");
	// Real to int has no autocast: refused. A struct into a bool, a pawn into a controller's place.
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Length, TEXT("ReturnValue")), FEditFixture::Pin(Add, TEXT("A")))), "1 Float is not compatible with Integer.");
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Add, TEXT("ReturnValue")), FEditFixture::Pin(Branch, TEXT("Condition")))), "1 Integer is not compatible with Boolean.");
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Pawn, TEXT("ReturnValue")), FEditFixture::Pin(Jump, TEXT("self")))),
		"1 Pawn Object Reference is not compatible with Character Object Reference.");
	// An array never goes into a single value.
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(AllActors, TEXT("OutActors")), FEditFixture::Pin(Jump, TEXT("self")))),
		"1 Array of Actor Object References is not compatible with Character Object Reference.");
	// Float and double mix freely; a child class goes into a parent class's pin.
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Length, TEXT("ReturnValue")), FEditFixture::Pin(Less, TEXT("A")))), "0 ");
	FSimulatedNode* Possessed = Fixture.Call(TEXT("/Script/Engine.Pawn"), TEXT("IsPlayerControlled"));
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Pawn, TEXT("ReturnValue")), FEditFixture::Pin(Possessed, TEXT("self")))), "0 ");
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Controller, TEXT("ReturnValue")), FEditFixture::Pin(Possessed, TEXT("self")))),
		"1 Player Controller Object Reference is not compatible with Pawn Object Reference.");
	// Nothing was linked by asking.
	EXPECT_TRUE(FEditFixture::Pin(Pawn, TEXT("ReturnValue")).LinkedTo.empty());
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);
}

// unreal-behaviour-blueprints.md §3.1, §3.2
TEST(SimulatedBlueprintSchema, OneLinkPinsReplaceTheirLinkAndOthersKeepAll)
{
	FEditFixture Fixture;
	FSimulatedNode* First = Fixture.Model->AddBranchNode(*Fixture.Graph, 0, 0);
	FSimulatedNode* Second = Fixture.Model->AddBranchNode(*Fixture.Graph, 300, 0);
	FSimulatedNode* Third = Fixture.Model->AddBranchNode(*Fixture.Graph, 300, 200);
	FSimulatedBlueprints& Model = *Fixture.Model;

	ASSERT_TRUE(Fixture.Link(First, TEXT("then"), Second, TEXT("execute")));
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::Dirty);
	// An exec output holds one link: the new one replaces it (the output passed second: B's side).
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Third, TEXT("execute")), FEditFixture::Pin(First, TEXT("then")))), "3 Replace existing output connections");
	ASSERT_TRUE(Fixture.Link(Third, TEXT("execute"), First, TEXT("then")));
	EXPECT_TRUE(FEditFixture::Pin(Second, TEXT("execute")).LinkedTo.empty());
	EXPECT_EQ(FEditFixture::Pin(First, TEXT("then")).LinkedTo.size(), 1u);
	// An exec input takes any number of links.
	ASSERT_TRUE(Fixture.Link(Second, TEXT("then"), Third, TEXT("execute")));
	EXPECT_EQ(FEditFixture::Pin(Third, TEXT("execute")).LinkedTo.size(), 2u);
	// Linking the same pair again leaves one link.
	ASSERT_TRUE(Fixture.Link(Second, TEXT("then"), Third, TEXT("execute")));
	EXPECT_EQ(FEditFixture::Pin(Third, TEXT("execute")).LinkedTo.size(), 2u);

	// A data input holds one source; a data output feeds any number.
	FSimulatedNode* Less = Fixture.Call(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Less_DoubleDouble"));
	FSimulatedNode* Other = Fixture.Call(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Less_DoubleDouble"));
	ASSERT_TRUE(Fixture.Link(Less, TEXT("ReturnValue"), Second, TEXT("Condition")));
	ASSERT_TRUE(Fixture.Link(Less, TEXT("ReturnValue"), Third, TEXT("Condition")));
	EXPECT_EQ(Verdict(Model.CanCreateConnection(FEditFixture::Pin(Other, TEXT("ReturnValue")), FEditFixture::Pin(Second, TEXT("Condition")))), "3 Replace existing input connections");
	ASSERT_TRUE(Fixture.Link(Other, TEXT("ReturnValue"), Second, TEXT("Condition")));
	EXPECT_EQ(FEditFixture::Pin(Second, TEXT("Condition")).LinkedTo.front()->OwningNode, Other);
	EXPECT_EQ(FEditFixture::Pin(Less, TEXT("ReturnValue")).LinkedTo.size(), 1u);
	// A refusal changes nothing.
	EXPECT_FALSE(Fixture.Link(First, TEXT("then"), Other, TEXT("A")));
	EXPECT_EQ(FEditFixture::Pin(First, TEXT("then")).LinkedTo.front()->OwningNode, Third);
}

// unreal-behaviour-blueprints.md §3.2, §3.4
TEST(SimulatedBlueprintSchema, IntegerIntoRealGetsTheAutocastNodeBetweenThePins)
{
	FEditFixture Fixture;
	FSimulatedNode* Add = Fixture.Call(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Add_IntInt"), 0, 0);
	FSimulatedNode* Less = Fixture.Call(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Less_DoubleDouble"), 400, 200);
	EXPECT_EQ(Verdict(Fixture.Model->CanCreateConnection(FEditFixture::Pin(Add, TEXT("ReturnValue")), FEditFixture::Pin(Less, TEXT("B")))), "5 Convert Integer to Float");
	FSimulatedNode* Conversion = nullptr;
	ASSERT_TRUE(Fixture.Model->TryCreateConnection(FEditFixture::Pin(Add, TEXT("ReturnValue")), FEditFixture::Pin(Less, TEXT("B")), &Conversion));
	ASSERT_NE(Conversion, nullptr);
	EXPECT_EQ(S(Conversion->Data.MemberName), "Conv_IntToDouble");
	EXPECT_EQ(S(Fixture.Model->GetNodeTitle(*Conversion)), "To Float (Integer)");
	EXPECT_EQ(Conversion->PosX, 200);
	EXPECT_EQ(Conversion->PosY, 100);
	EXPECT_EQ(FEditFixture::Pin(Add, TEXT("ReturnValue")).LinkedTo.front(), &FEditFixture::Pin(Conversion, TEXT("InInt")));
	EXPECT_EQ(FEditFixture::Pin(Less, TEXT("B")).LinkedTo.front(), &FEditFixture::Pin(Conversion, TEXT("ReturnValue")));
	EXPECT_EQ(Fixture.Graph->Nodes.size(), 6u);

	// An integer into Print String's text goes through the string library's autocast.
	FSimulatedNode* Print = Fixture.Call(TEXT("/Script/Engine.KismetSystemLibrary"), TEXT("PrintString"), 800, 0);
	EXPECT_EQ(Verdict(Fixture.Model->CanCreateConnection(FEditFixture::Pin(Add, TEXT("ReturnValue")), FEditFixture::Pin(Print, TEXT("InString")))), "5 Convert Integer to String (by ref)") << "a const reference is a by-ref pin";
	ASSERT_TRUE(Fixture.Model->TryCreateConnection(FEditFixture::Pin(Add, TEXT("ReturnValue")), FEditFixture::Pin(Print, TEXT("InString")), &Conversion));
	EXPECT_EQ(S(Fixture.Model->GetNodeTitle(*Conversion)), "To String (Integer)");
	// A struct has no conversion into a string in the library: refused.
	FSimulatedNode* Location = Fixture.Call(TEXT("/Script/Engine.Actor"), TEXT("K2_GetActorLocation"));
	EXPECT_EQ(Verdict(Fixture.Model->CanCreateConnection(FEditFixture::Pin(Location, TEXT("ReturnValue")), FEditFixture::Pin(Print, TEXT("InString")))), "1 Vector is not compatible with String (by ref).");
}

// unreal-behaviour-blueprints.md §2.4, §3.2
TEST(SimulatedBlueprintSchema, CastSourceVetoesAndTakesTheTypeOfWhatFeedsIt)
{
	FEditFixture Fixture;
	FSimulatedNode* Cast = Fixture.Model->AddCastNode(*Fixture.Graph, Fixture.Port->GetEditor().FindTypeByPath(TEXT("/Script/Engine.Character")), 300, 0);
	FSimulatedNode* Pawn = Fixture.Call(TEXT("/Script/Engine.GameplayStatics"), TEXT("GetPlayerPawn"));
	FSimulatedNode* AllActors = Fixture.Call(TEXT("/Script/Engine.GameplayStatics"), TEXT("GetAllActorsOfClass"));
	FSimulatedNode* Add = Fixture.Call(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Add_IntInt"));
	FSimulatedNode* Branch = Fixture.Model->AddBranchNode(*Fixture.Graph, 0, 0);
	FSimulatedPin& Object = FEditFixture::Pin(Cast, TEXT("Object"));
	EXPECT_EQ(Verdict(Fixture.Model->CanCreateConnection(FEditFixture::Pin(AllActors, TEXT("OutActors")), Object)), "1 You cannot cast containers of objects.");
	EXPECT_EQ(Verdict(Fixture.Model->CanCreateConnection(FEditFixture::Pin(Add, TEXT("ReturnValue")), Object)), "1 You can only cast objects/interfaces.");
	// The veto comes before the direction check.
	EXPECT_EQ(Verdict(Fixture.Model->CanCreateConnection(FEditFixture::Pin(Branch, TEXT("execute")), Object)), "1 You can only cast objects/interfaces.");
	ASSERT_TRUE(Fixture.Link(Pawn, TEXT("ReturnValue"), Cast, TEXT("Object")));
	EXPECT_EQ(S(Object.PinType.PinCategory.ToString()), "object");
	EXPECT_EQ(S(Object.PinType.PinSubCategoryObject.PathName), "/Script/Engine.Pawn");
	EXPECT_EQ(S(FEditFixture::Pin(Cast, TEXT("AsCharacter")).PinType.PinSubCategoryObject.Name), "Character");
}

// unreal-behaviour-blueprints.md §3.5
TEST(SimulatedBlueprintSchema, DefaultsAreValidatedAndInvalidOnesIgnored)
{
	FEditFixture Fixture;
	FSimulatedNode* Add = Fixture.Call(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Add_IntInt"));
	FSimulatedNode* Less = Fixture.Call(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Less_DoubleDouble"));
	FSimulatedNode* Print = Fixture.Call(TEXT("/Script/Engine.KismetSystemLibrary"), TEXT("PrintString"));
	FSimulatedNode* Move = Fixture.Call(TEXT("/Script/Engine.Actor"), TEXT("K2_SetActorLocation"));
	FSimulatedBlueprints& Model = *Fixture.Model;

	EXPECT_EQ(S(Model.IsPinDefaultValid(FEditFixture::Pin(Add, TEXT("A")), TEXT("seven"))), "Expected a valid number for an integer property");
	EXPECT_EQ(S(Model.IsPinDefaultValid(FEditFixture::Pin(Add, TEXT("A")), TEXT(" -12 "))), "");
	EXPECT_EQ(S(Model.IsPinDefaultValid(FEditFixture::Pin(Less, TEXT("A")), TEXT("1.5.2"))), "Expected a valid number for a real property");
	EXPECT_EQ(S(Model.IsPinDefaultValid(FEditFixture::Pin(Less, TEXT("A")), TEXT("-2.5e3"))), "");
	EXPECT_EQ(S(Model.IsPinDefaultValid(FEditFixture::Pin(Move, TEXT("NewLocation")), TEXT("1, 2"))), "Invalid value for an FVector");
	EXPECT_EQ(S(Model.IsPinDefaultValid(FEditFixture::Pin(Move, TEXT("NewLocation")), TEXT("1, 2, 3"))), "");
	EXPECT_EQ(S(Model.IsPinDefaultValid(FEditFixture::Pin(Print, TEXT("TextColor")), TEXT("(R=1,G=0)"))), "Invalid value for an FLinearColor");
	// A const reference is passed by value: any text is a string default.
	EXPECT_EQ(S(Model.IsPinDefaultValid(FEditFixture::Pin(Print, TEXT("InString")), TEXT("Hello there"))), "");

	// An invalid value is ignored silently and leaves the Blueprint as it was.
	EXPECT_FALSE(Model.TrySetDefaultValue(FEditFixture::Pin(Add, TEXT("A")), TEXT("seven")));
	EXPECT_EQ(S(FEditFixture::Pin(Add, TEXT("A")).DefaultValue), "0");
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);
	EXPECT_TRUE(Model.TrySetDefaultValue(FEditFixture::Pin(Add, TEXT("A")), TEXT("7")));
	EXPECT_EQ(S(FEditFixture::Pin(Add, TEXT("A")).DefaultValue), "7");
	EXPECT_EQ(Fixture.Blueprint->Status, EZorvekMCPBridgeBlueprintStatus::Dirty);
}
