// The road, intersection and skyscraper generators: the footprint each answer gives is the placed
// actor's bounds, roads and intersections of the same lanes tile, the part budget holds for the
// tallest tower, and out-of-range parameters are refused before anything is created.
#include "PrimitiveActorTestSupport.h"
#include "Blueprint/ZorvekMCPBridgeCityActorBlueprints.h"

using namespace ZorvekPrimitiveActorTests;

namespace
{
	const TCHAR* const RoadPath = TEXT("/Game/City/BP_Road.BP_Road");
	const TCHAR* const CrossPath = TEXT("/Game/City/BP_Cross.BP_Cross");
	const TCHAR* const TowerPath = TEXT("/Game/City/BP_Tower.BP_Tower");

	using FCityActorBlueprintTest = FPrimitiveActorTest;

	std::string Footprint(const TSharedPtr<FJsonObject>& Payload)
	{
		const TSharedPtr<FJsonObject> Footprint = Payload->GetObjectField(TEXT("footprint"));
		std::ostringstream Out;
		Out << Footprint->GetNumberField(TEXT("length")) << " x " << Footprint->GetNumberField(TEXT("width")) << " x " << Footprint->GetNumberField(TEXT("height"));
		return Out.str();
	}
}

TEST_F(FCityActorBlueprintTest, RoadAndIntersectionOfTheSameLanesTileAndPlaceWithTheirFootprints)
{
	const TSharedPtr<FJsonObject> Road = Ok(CallJson(TEXT("blueprint_create_road_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Road"})"));
	// Two lanes of 350 and sidewalks of 200: 1100 wide, sidewalks 35 high.
	EXPECT_EQ(Footprint(Road), "2000 x 1100 x 35");
	EXPECT_EQ(PartNames(Road), (std::vector<std::string>{"Surface", "LaneMarking_1", "SidewalkLeft", "SidewalkRight"}));
	EXPECT_EQ(S(Road->GetStringField(TEXT("compile_status"))), "up_to_date");

	const TSharedPtr<FJsonObject> Cross = Ok(CallJson(TEXT("blueprint_create_intersection_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Cross"})"));
	EXPECT_EQ(Footprint(Cross), "1100 x 1100 x 35");
	// The surface, four corners and two stripes per lane on each of the four arms.
	EXPECT_EQ(Cross->GetNumberField(TEXT("part_count")), 1 + 4 + 4 * 4);

	// Placed end to end at the pitch the footprints give, the pieces touch and line up.
	const TSharedPtr<FJsonObject> PlacedRoad = PlaceAt(RoadPath, 0.0, 0.0, 0.0);
	const TSharedPtr<FJsonObject> PlacedCross = PlaceAt(CrossPath, 2000.0 * 0.5 + 1100.0 * 0.5, 0.0, 0.0);
	EXPECT_EQ(Box(PlacedRoad->GetObjectField(TEXT("bounds"))), Box(Road->GetObjectField(TEXT("footprint"))->GetObjectField(TEXT("bounds"))));
	EXPECT_EQ(Box(PlacedCross->GetObjectField(TEXT("bounds"))), ShiftedBox(Cross->GetObjectField(TEXT("footprint"))->GetObjectField(TEXT("bounds")), 1550.0, 0.0, 0.0));
	EXPECT_EQ(PlacedRoad->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("max"))->GetNumberField(TEXT("x")),
		PlacedCross->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("min"))->GetNumberField(TEXT("x")));
}

TEST_F(FCityActorBlueprintTest, RoadWidthEqualsTheIntersectionSideForEveryLaneLayout)
{
	using namespace ZorvekMCPBridgeCityActorBlueprints;
	for (int32 Lanes = 1; Lanes <= MaxLaneCount; ++Lanes)
	{
		for (const double Sidewalk : {0.0, 150.0})
		{
			FRoadParams Road;
			Road.LaneCount = Lanes;
			Road.LaneWidth = 300.0;
			Road.SidewalkWidth = Sidewalk;
			FIntersectionParams Cross;
			Cross.LaneCount = Lanes;
			Cross.LaneWidth = 300.0;
			Cross.SidewalkWidth = Sidewalk;
			ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec RoadSpec;
			ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec CrossSpec;
			FString Error;
			ASSERT_TRUE(MakeRoadSpec(Road, RoadSpec, Error)) << S(Error);
			ASSERT_TRUE(MakeIntersectionSpec(Cross, CrossSpec, Error)) << S(Error);
			const FFootprint RoadPrint = GetFootprint(RoadSpec);
			const FFootprint CrossPrint = GetFootprint(CrossSpec);
			EXPECT_DOUBLE_EQ(RoadPrint.Width, Lanes * 300.0 + 2.0 * Sidewalk) << Lanes;
			EXPECT_DOUBLE_EQ(CrossPrint.Length, RoadPrint.Width) << Lanes;
			EXPECT_DOUBLE_EQ(CrossPrint.Width, RoadPrint.Width) << Lanes;
			EXPECT_LE(CrossSpec.Parts.Num(), ZorvekMCPBridgePrimitiveActors::MaxParts);
		}
	}
}

TEST_F(FCityActorBlueprintTest, ATallTowerStaysWithinThePartBudgetAndPlacesWithItsFootprint)
{
	const TSharedPtr<FJsonObject> Tower = Ok(CallJson(TEXT("blueprint_create_skyscraper_actor"),
		R"({"PackagePath": "/Game/City", "AssetName": "BP_Tower", "Floors": "150", "Width": 1500, "Depth": "1000",
		    "FacadeMaterialPath": "/Game/Materials/M_Rock"})"));
	// 150 floors give a band every second floor: the tower, 75 bands and the roof.
	EXPECT_EQ(Tower->GetNumberField(TEXT("part_count")), 77);
	// 150 floors of 350 and a roof block of 280; the bands stand 10 proud of each face.
	EXPECT_EQ(Footprint(Tower), "1520 x 1020 x 52780");
	EXPECT_EQ(S(Tower->GetStringField(TEXT("compile_status"))), "up_to_date");
	EXPECT_EQ(TemplateValue(TowerPath, TEXT("Tower"), TEXT("OverrideMaterials")), "(\"/Script/Engine.Material'/Game/Materials/M_Rock.M_Rock'\")");
	const TSharedPtr<FJsonObject> Placed = PlaceAt(TowerPath, -3000.0, 2000.0, 0.0);
	EXPECT_EQ(Box(Placed->GetObjectField(TEXT("bounds"))), ShiftedBox(Tower->GetObjectField(TEXT("footprint"))->GetObjectField(TEXT("bounds")), -3000.0, 2000.0, 0.0));

	const TSharedPtr<FJsonObject> Plain = Ok(CallJson(TEXT("blueprint_create_skyscraper_actor"),
		R"({"PackagePath": "/Game/City", "AssetName": "BP_Plain", "Floors": 200, "WindowBands": false, "Roof": "false"})"));
	EXPECT_EQ(PartNames(Plain), (std::vector<std::string>{"Tower"}));
	EXPECT_EQ(Footprint(Plain), "2000 x 2000 x 70000");
}

TEST_F(FCityActorBlueprintTest, OutOfRangeParametersAreRefusedBeforeAnythingIsCreated)
{
	const struct
	{
		const TCHAR* Tool;
		const char* Arguments;
		const char* Message;
	} Cases[] = {
		{TEXT("blueprint_create_road_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Road", "LaneCount": 9})", "LaneCount must be a whole number from 1 to 8."},
		{TEXT("blueprint_create_road_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Road", "LaneCount": "many"})", "LaneCount must be a whole number from 1 to 8."},
		{TEXT("blueprint_create_road_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Road", "Length": "2000000"})", "Length must be between 100 and 1000000 cm."},
		{TEXT("blueprint_create_road_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Road", "LaneWidth": "wide"})", "LaneWidth must be a number."},
		{TEXT("blueprint_create_road_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Road", "SidewalkWidth": -5})", "SidewalkWidth must be between 0 and 1000 cm."},
		{TEXT("blueprint_create_road_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Road", "MarkingMaterialPath": "/Game/Nope"})",
			"Could not resolve Material asset for MarkingMaterialPath: /Game/Nope"},
		{TEXT("blueprint_create_road_actor"), R"({"PackagePath": "/Game/City"})", "blueprint_create_road_actor requires PackagePath and AssetName."},
		{TEXT("blueprint_create_intersection_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Road", "LaneWidth": 50})", "LaneWidth must be between 100 and 1000 cm."},
		{TEXT("blueprint_create_skyscraper_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Road", "Floors": 201})", "Floors must be a whole number from 1 to 200."},
		{TEXT("blueprint_create_skyscraper_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Road", "Depth": "1e9"})", "Depth must be between 100 and 100000 cm."},
		{TEXT("blueprint_create_skyscraper_actor"), R"({"PackagePath": "/Game/City", "AssetName": "BP_Road", "RoofMaterialPath": "/Game/Textures/T_M_Rock_D"})",
			"Could not resolve Material asset for RoofMaterialPath: /Game/Textures/T_M_Rock_D"},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(TextError(CallJson(Case.Tool, Case.Arguments)), Case.Message) << Case.Arguments;
		ExpectNoAsset(RoadPath);
	}
}

TEST_F(FCityActorBlueprintTest, AnIntersectionWithoutSidewalksIsOneSlab)
{
	const TSharedPtr<FJsonObject> Cross = Ok(CallJson(TEXT("blueprint_create_intersection_actor"),
		R"({"PackagePath": "/Game/City", "AssetName": "BP_Cross", "LaneCount": 3, "SidewalkWidth": 0, "Crossings": true})"));
	EXPECT_EQ(PartNames(Cross), (std::vector<std::string>{"Surface"}));
	EXPECT_EQ(Footprint(Cross), "1050 x 1050 x 20");
	EXPECT_FALSE(Cross->GetObjectField(TEXT("parameters"))->GetBoolField(TEXT("crossings")));
}
