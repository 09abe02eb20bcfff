#include "Blueprint/ZorvekMCPBridgeCityActorBlueprints.h"

#include "Blueprint/ZorvekMCPBridgeBlueprintMembers.h"
#include "Math/UnrealMathUtility.h"
#include "World/ZorvekMCPBridgeActorReadback.h"

// Helpers inside the domain namespace, so a unity build does not share them with other files.
namespace ZorvekMCPBridgeCityActorBlueprints
{
namespace
{
	using ZorvekMCPBridgePrimitiveActors::EPrimitiveShape;
	using ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec;
	using ZorvekMCPBridgePrimitiveActors::FPrimitivePart;

	// The basic cube is 100 cm on each side, so a box of a size is the cube scaled by size / 100.
	constexpr double CityCubeSize = 100.0;
	// Part budget of a skyscraper besides its window bands: the tower and the roof.
	constexpr int32 CityMaxWindowBands = ZorvekMCPBridgePrimitiveActors::MaxParts - 2;

	// A box of the size whose centre is at Center.
	FPrimitivePart MakeCityBox(const FString& Name, const FZorvekMCPBridgeVector& Center, const FZorvekMCPBridgeVector& Size, const FString& MaterialPath)
	{
		FPrimitivePart Part;
		Part.Name = Name;
		Part.Shape = EPrimitiveShape::Cube;
		Part.Transform.Location = Center;
		Part.Transform.Scale = { Size.X / CityCubeSize, Size.Y / CityCubeSize, Size.Z / CityCubeSize };
		Part.MaterialPath = MaterialPath;
		return Part;
	}

	bool CheckCityRange(const TCHAR* Key, double Value, double Min, double Max, FString& OutError)
	{
		if (!FMath::IsFinite(Value) || Value < Min || Value > Max)
		{
			OutError = FString::Printf(TEXT("%s must be between %d and %d cm."), Key, static_cast<int32>(Min), static_cast<int32>(Max));
			return false;
		}
		return true;
	}

	bool CheckCityCount(const TCHAR* Key, int32 Value, int32 Max, FString& OutError)
	{
		if (Value < 1 || Value > Max)
		{
			OutError = FString::Printf(TEXT("%s must be a whole number from 1 to %d."), Key, Max);
			return false;
		}
		return true;
	}

	bool CheckCityLanes(int32 LaneCount, double LaneWidth, double SidewalkWidth, FString& OutError)
	{
		return CheckCityCount(TEXT("LaneCount"), LaneCount, MaxLaneCount, OutError)
			&& CheckCityRange(TEXT("LaneWidth"), LaneWidth, MinLaneWidth, MaxLaneWidth, OutError)
			&& CheckCityRange(TEXT("SidewalkWidth"), SidewalkWidth, 0.0, MaxSidewalkWidth, OutError);
	}

	FPrimitiveActorSpec MakeCitySpec(const FString& ToolName, const FString& PackagePath, const FString& AssetName, bool bCompile)
	{
		FPrimitiveActorSpec Spec;
		Spec.ToolName = ToolName;
		Spec.PackagePath = PackagePath;
		Spec.AssetName = AssetName;
		Spec.bCompile = bCompile;
		return Spec;
	}

	// Each role material that is given must load, named by its parameter.
	struct FCityRoleMaterial
	{
		const TCHAR* Key;
		const FString* Path;
	};

	bool CheckCityMaterials(IZorvekMCPBridgeEditorPort& Port, const FCityRoleMaterial (&Materials)[3], FString& OutError)
	{
		for (const FCityRoleMaterial& Material : Materials)
		{
			if (!Material.Path->IsEmpty() && ZorvekMCPBridgeBlueprintMembers::ResolveMaterialPath(Port, *Material.Path).IsEmpty())
			{
				OutError = FString::Printf(TEXT("Could not resolve Material asset for %s: %s"), Material.Key, **Material.Path);
				return false;
			}
		}
		return true;
	}

	FCityActorBuild BuildCityActor(IZorvekMCPBridgeEditorPort& Port, bool bSpecMade, const FPrimitiveActorSpec& Spec, const FString& SpecError, bool bMaterialsOk, const FString& MaterialError)
	{
		FCityActorBuild Result;
		if (!bSpecMade || !bMaterialsOk)
		{
			Result.Build.FailedStep = TEXT("validate");
			Result.Build.Error = bSpecMade ? MaterialError : SpecError;
			return Result;
		}
		Result.Footprint = GetFootprint(Spec);
		Result.Build = ZorvekMCPBridgePrimitiveActors::BuildPrimitiveActor(Port, Spec);
		return Result;
	}
}
}

bool ZorvekMCPBridgeCityActorBlueprints::MakeRoadSpec(const FRoadParams& Params, FPrimitiveActorSpec& OutSpec, FString& OutError)
{
	if (!CheckCityRange(TEXT("Length"), Params.Length, MinLength, MaxLength, OutError) || !CheckCityLanes(Params.LaneCount, Params.LaneWidth, Params.SidewalkWidth, OutError))
	{
		return false;
	}
	OutSpec = MakeCitySpec(TEXT("blueprint_create_road_actor"), Params.PackagePath, Params.AssetName, Params.bCompile);
	const double RoadWidth = Params.LaneCount * Params.LaneWidth;
	OutSpec.Parts.Add(MakeCityBox(TEXT("Surface"), { 0.0, 0.0, RoadSurfaceHeight * 0.5 }, { Params.Length, RoadWidth, RoadSurfaceHeight }, Params.SurfaceMaterialPath));
	// A continuous line between each two lanes, lying on the surface.
	for (int32 Lane = 1; Lane < Params.LaneCount; ++Lane)
	{
		const double Y = -RoadWidth * 0.5 + Lane * Params.LaneWidth;
		OutSpec.Parts.Add(MakeCityBox(FString::Printf(TEXT("LaneMarking_%d"), Lane), { 0.0, Y, RoadSurfaceHeight + MarkingHeight * 0.5 },
			{ Params.Length, MarkingWidth, MarkingHeight }, Params.MarkingMaterialPath));
	}
	if (Params.SidewalkWidth > 0.0)
	{
		const double Y = RoadWidth * 0.5 + Params.SidewalkWidth * 0.5;
		const FZorvekMCPBridgeVector Size = { Params.Length, Params.SidewalkWidth, SidewalkHeight };
		OutSpec.Parts.Add(MakeCityBox(TEXT("SidewalkLeft"), { 0.0, -Y, SidewalkHeight * 0.5 }, Size, Params.SidewalkMaterialPath));
		OutSpec.Parts.Add(MakeCityBox(TEXT("SidewalkRight"), { 0.0, Y, SidewalkHeight * 0.5 }, Size, Params.SidewalkMaterialPath));
	}
	return true;
}

bool ZorvekMCPBridgeCityActorBlueprints::MakeIntersectionSpec(const FIntersectionParams& Params, FPrimitiveActorSpec& OutSpec, FString& OutError)
{
	if (!CheckCityLanes(Params.LaneCount, Params.LaneWidth, Params.SidewalkWidth, OutError))
	{
		return false;
	}
	OutSpec = MakeCitySpec(TEXT("blueprint_create_intersection_actor"), Params.PackagePath, Params.AssetName, Params.bCompile);
	const double RoadWidth = Params.LaneCount * Params.LaneWidth;
	const double Side = RoadWidth + 2.0 * Params.SidewalkWidth;
	OutSpec.Parts.Add(MakeCityBox(TEXT("Surface"), { 0.0, 0.0, RoadSurfaceHeight * 0.5 }, { Side, Side, RoadSurfaceHeight }, Params.SurfaceMaterialPath));
	if (Params.SidewalkWidth <= 0.0)
	{
		return true;
	}
	const double CornerOffset = RoadWidth * 0.5 + Params.SidewalkWidth * 0.5;
	const struct
	{
		const TCHAR* Name;
		double X;
		double Y;
	} Corners[] = { {TEXT("CornerNE"), 1.0, 1.0}, {TEXT("CornerNW"), -1.0, 1.0}, {TEXT("CornerSW"), -1.0, -1.0}, {TEXT("CornerSE"), 1.0, -1.0} };
	for (const auto& Corner : Corners)
	{
		OutSpec.Parts.Add(MakeCityBox(Corner.Name, { Corner.X * CornerOffset, Corner.Y * CornerOffset, SidewalkHeight * 0.5 },
			{ Params.SidewalkWidth, Params.SidewalkWidth, SidewalkHeight }, Params.SidewalkMaterialPath));
	}
	if (!Params.bCrossings)
	{
		return true;
	}
	// Each arm (the band between two corners, where a road of the same lanes meets the piece) gets
	// two stripes per lane, running with the road, spread across the road's width.
	const int32 StripeCount = 2 * Params.LaneCount;
	const double StripePitch = RoadWidth / StripeCount;
	const double StripeWidth = StripePitch * 0.5;
	const double StripeLength = Params.SidewalkWidth * 0.8;
	const struct
	{
		const TCHAR* Name;
		double Direction;
		bool bAlongX;
	} Arms[] = { {TEXT("CrossingEast"), 1.0, true}, {TEXT("CrossingWest"), -1.0, true}, {TEXT("CrossingNorth"), 1.0, false}, {TEXT("CrossingSouth"), -1.0, false} };
	for (const auto& Arm : Arms)
	{
		for (int32 Stripe = 0; Stripe < StripeCount; ++Stripe)
		{
			const double Across = -RoadWidth * 0.5 + (Stripe + 0.5) * StripePitch;
			const double Along = Arm.Direction * CornerOffset;
			const FZorvekMCPBridgeVector Center = Arm.bAlongX ? FZorvekMCPBridgeVector{ Along, Across, RoadSurfaceHeight + MarkingHeight * 0.5 }
				: FZorvekMCPBridgeVector{ Across, Along, RoadSurfaceHeight + MarkingHeight * 0.5 };
			const FZorvekMCPBridgeVector Size = Arm.bAlongX ? FZorvekMCPBridgeVector{ StripeLength, StripeWidth, MarkingHeight }
				: FZorvekMCPBridgeVector{ StripeWidth, StripeLength, MarkingHeight };
			OutSpec.Parts.Add(MakeCityBox(FString::Printf(TEXT("%s_%d"), Arm.Name, Stripe + 1), Center, Size, Params.MarkingMaterialPath));
		}
	}
	return true;
}

bool ZorvekMCPBridgeCityActorBlueprints::MakeSkyscraperSpec(const FSkyscraperParams& Params, FPrimitiveActorSpec& OutSpec, FString& OutError)
{
	if (!CheckCityCount(TEXT("Floors"), Params.Floors, MaxFloors, OutError) || !CheckCityRange(TEXT("FloorHeight"), Params.FloorHeight, MinFloorHeight, MaxFloorHeight, OutError)
		|| !CheckCityRange(TEXT("Width"), Params.Width, MinBuildingSide, MaxBuildingSide, OutError)
		|| !CheckCityRange(TEXT("Depth"), Params.Depth, MinBuildingSide, MaxBuildingSide, OutError))
	{
		return false;
	}
	OutSpec = MakeCitySpec(TEXT("blueprint_create_skyscraper_actor"), Params.PackagePath, Params.AssetName, Params.bCompile);
	const double TowerHeight = Params.Floors * Params.FloorHeight;
	OutSpec.Parts.Add(MakeCityBox(TEXT("Tower"), { 0.0, 0.0, TowerHeight * 0.5 }, { Params.Width, Params.Depth, TowerHeight }, Params.FacadeMaterialPath));
	if (Params.bWindowBands)
	{
		// One band per floor while the part budget allows, else one every few floors.
		const int32 FloorsPerBand = (Params.Floors + CityMaxWindowBands - 1) / CityMaxWindowBands;
		const FZorvekMCPBridgeVector Size = { Params.Width + 2.0 * WindowBandDepth, Params.Depth + 2.0 * WindowBandDepth, Params.FloorHeight * 0.4 };
		for (int32 Floor = 0, Band = 1; Floor < Params.Floors; Floor += FloorsPerBand, ++Band)
		{
			OutSpec.Parts.Add(MakeCityBox(FString::Printf(TEXT("Windows_%d"), Band), { 0.0, 0.0, (Floor + 0.5) * Params.FloorHeight }, Size, Params.WindowMaterialPath));
		}
	}
	if (Params.bRoof)
	{
		// A plant room on top, inset from the facade.
		const double RoofHeight = Params.FloorHeight * 0.8;
		OutSpec.Parts.Add(MakeCityBox(TEXT("Roof"), { 0.0, 0.0, TowerHeight + RoofHeight * 0.5 }, { Params.Width * 0.6, Params.Depth * 0.6, RoofHeight }, Params.RoofMaterialPath));
	}
	return true;
}

ZorvekMCPBridgeCityActorBlueprints::FFootprint ZorvekMCPBridgeCityActorBlueprints::GetFootprint(const FPrimitiveActorSpec& Spec)
{
	FFootprint Footprint;
	Footprint.Bounds = ZorvekMCPBridgePrimitiveActors::ComputeLocalBounds(Spec.Parts);
	Footprint.Length = Footprint.Bounds.Max.X - Footprint.Bounds.Min.X;
	Footprint.Width = Footprint.Bounds.Max.Y - Footprint.Bounds.Min.Y;
	Footprint.Height = Footprint.Bounds.Max.Z - Footprint.Bounds.Min.Z;
	return Footprint;
}

ZorvekMCPBridgeCityActorBlueprints::FCityActorBuild ZorvekMCPBridgeCityActorBlueprints::CreateRoadActor(IZorvekMCPBridgeEditorPort& Port, const FRoadParams& Params)
{
	FPrimitiveActorSpec Spec;
	FString SpecError;
	FString MaterialError;
	const bool bSpecMade = MakeRoadSpec(Params, Spec, SpecError);
	const bool bMaterialsOk = bSpecMade && CheckCityMaterials(Port, { {TEXT("SurfaceMaterialPath"), &Params.SurfaceMaterialPath},
		{TEXT("MarkingMaterialPath"), &Params.MarkingMaterialPath}, {TEXT("SidewalkMaterialPath"), &Params.SidewalkMaterialPath} }, MaterialError);
	return BuildCityActor(Port, bSpecMade, Spec, SpecError, bMaterialsOk, MaterialError);
}

ZorvekMCPBridgeCityActorBlueprints::FCityActorBuild ZorvekMCPBridgeCityActorBlueprints::CreateIntersectionActor(IZorvekMCPBridgeEditorPort& Port, const FIntersectionParams& Params)
{
	FPrimitiveActorSpec Spec;
	FString SpecError;
	FString MaterialError;
	const bool bSpecMade = MakeIntersectionSpec(Params, Spec, SpecError);
	const bool bMaterialsOk = bSpecMade && CheckCityMaterials(Port, { {TEXT("SurfaceMaterialPath"), &Params.SurfaceMaterialPath},
		{TEXT("MarkingMaterialPath"), &Params.MarkingMaterialPath}, {TEXT("SidewalkMaterialPath"), &Params.SidewalkMaterialPath} }, MaterialError);
	return BuildCityActor(Port, bSpecMade, Spec, SpecError, bMaterialsOk, MaterialError);
}

ZorvekMCPBridgeCityActorBlueprints::FCityActorBuild ZorvekMCPBridgeCityActorBlueprints::CreateSkyscraperActor(IZorvekMCPBridgeEditorPort& Port, const FSkyscraperParams& Params)
{
	FPrimitiveActorSpec Spec;
	FString SpecError;
	FString MaterialError;
	const bool bSpecMade = MakeSkyscraperSpec(Params, Spec, SpecError);
	const bool bMaterialsOk = bSpecMade && CheckCityMaterials(Port, { {TEXT("FacadeMaterialPath"), &Params.FacadeMaterialPath},
		{TEXT("WindowMaterialPath"), &Params.WindowMaterialPath}, {TEXT("RoofMaterialPath"), &Params.RoofMaterialPath} }, MaterialError);
	return BuildCityActor(Port, bSpecMade, Spec, SpecError, bMaterialsOk, MaterialError);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeCityActorBlueprints::MakeFootprintJson(const FFootprint& Footprint)
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetNumberField(TEXT("length"), Footprint.Length);
	Result->SetNumberField(TEXT("width"), Footprint.Width);
	Result->SetNumberField(TEXT("height"), Footprint.Height);
	Result->SetObjectField(TEXT("bounds"), ZorvekMCPBridgeActorReadback::MakeBoundsJson(Footprint.Bounds));
	return Result;
}
