#include "Tools/ZorvekMCPBridgePcgCityTools.h"

#include "Dom/JsonValue.h"
#include "Misc/Paths.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Blueprint/ZorvekMCPBridgeCityActorBlueprints.h"
#include "Pcg/ZorvekMCPBridgePcgCityLayout.h"
#include "Pcg/ZorvekMCPBridgePcgProbe.h"
#include "Pcg/ZorvekMCPBridgePcgSplineBounds.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"
#include "World/ZorvekMCPBridgeActorReadback.h"
#include "World/ZorvekMCPBridgeWorldTransformArguments.h"

namespace
{
	using ZorvekMCPBridgeToolArguments::ReadBool;
	using ZorvekMCPBridgeToolArguments::ReadString;
	using ZorvekMCPBridgeWorldTransformArguments::FNumberOverride;

	const TCHAR* const PcgCityNotSampledNote = TEXT("The spline marks rectangular bounds only: roads are straight strips placed inside them, never sampled along the spline (pcg_spline_road_sampling is unsupported).");

	// Reads the numbers in order and keeps the first refusal.
	struct FPcgCityNumbers
	{
		FString Error;

		FNumberOverride Read(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key)
		{
			FNumberOverride Number;
			const FString Refusal = ZorvekMCPBridgeWorldTransformArguments::ReadNumber(Arguments, Key, Number);
			if (Error.IsEmpty())
			{
				Error = Refusal;
			}
			return Number;
		}

		// A size present and outside the documented range is refused with its key.
		void CheckSize(const TCHAR* Key, const FNumberOverride& Size)
		{
			if (Error.IsEmpty() && Size.bPresent && (Size.Value < ZorvekMCPBridgePcgSplineBounds::MinSize || Size.Value > ZorvekMCPBridgePcgSplineBounds::MaxSize))
			{
				Error = FString::Printf(TEXT("%s must be between 100 and 1000000 (centimetres)."), Key);
			}
		}
	};

	struct FPcgCityCreateSplineParams
	{
		bool bAllowCurrentLevel = false;
		FString ActorLabel;
		FNumberOverride Length;
		FNumberOverride Width;
		FNumberOverride LocationX;
		FNumberOverride LocationY;
		FNumberOverride LocationZ;
		FNumberOverride RotationYaw;
		FString Error;

		static FPcgCityCreateSplineParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FPcgCityCreateSplineParams Params;
			Params.bAllowCurrentLevel = ReadBool(Arguments, TEXT("AllowCurrentLevel"), false);
			Params.ActorLabel = ReadString(Arguments, TEXT("ActorLabel"), FString()).TrimStartAndEnd();
			FPcgCityNumbers Numbers;
			Params.Length = Numbers.Read(Arguments, TEXT("Length"));
			Params.Width = Numbers.Read(Arguments, TEXT("Width"));
			Params.LocationX = Numbers.Read(Arguments, TEXT("LocationX"));
			Params.LocationY = Numbers.Read(Arguments, TEXT("LocationY"));
			Params.LocationZ = Numbers.Read(Arguments, TEXT("LocationZ"));
			Params.RotationYaw = Numbers.Read(Arguments, TEXT("RotationYaw"));
			Numbers.CheckSize(TEXT("Length"), Params.Length);
			Numbers.CheckSize(TEXT("Width"), Params.Width);
			Params.Error = Numbers.Error;
			return Params;
		}
	};

	struct FPcgCitySetSplineParams
	{
		FString ActorNameOrLabel;
		bool bAllowCurrentLevel = false;
		FNumberOverride Length;
		FNumberOverride Width;
		FString Error;

		static FPcgCitySetSplineParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FPcgCitySetSplineParams Params;
			Params.ActorNameOrLabel = ReadString(Arguments, TEXT("ActorNameOrLabel"), FString());
			Params.bAllowCurrentLevel = ReadBool(Arguments, TEXT("AllowCurrentLevel"), false);
			FPcgCityNumbers Numbers;
			Params.Length = Numbers.Read(Arguments, TEXT("Length"));
			Params.Width = Numbers.Read(Arguments, TEXT("Width"));
			Numbers.CheckSize(TEXT("Length"), Params.Length);
			Numbers.CheckSize(TEXT("Width"), Params.Width);
			Params.Error = Numbers.Error;
			return Params;
		}
	};

	struct FPcgCityRoadRecipeParams
	{
		bool bAllowCurrentLevel = false;
		FString RecipeLabel;
		FString PackagePath;
		int32 SegmentCount = ZorvekMCPBridgePcgCityLayout::DefaultRoadSegments;
		ZorvekMCPBridgeCityActorBlueprints::FRoadParams Road;
		FZorvekMCPBridgeVector Origin;
		double Yaw = 0.0;
		FString Error;

		static FPcgCityRoadRecipeParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FPcgCityRoadRecipeParams Params;
			Params.bAllowCurrentLevel = ReadBool(Arguments, TEXT("AllowCurrentLevel"), false);
			Params.RecipeLabel = ReadString(Arguments, TEXT("RecipeLabel"), FString()).TrimStartAndEnd();
			Params.RecipeLabel = Params.RecipeLabel.IsEmpty() ? FString(TEXT("ZorvekPCGRoad")) : Params.RecipeLabel;
			Params.PackagePath = ReadString(Arguments, TEXT("PackagePath"), FString()).TrimStartAndEnd();
			Params.PackagePath = Params.PackagePath.IsEmpty() ? FString(TEXT("/Game/ZorvekPCG/Roads")) : Params.PackagePath;
			FPcgCityNumbers Numbers;
			const FNumberOverride Count = Numbers.Read(Arguments, TEXT("SegmentCount"));
			const FNumberOverride Length = Numbers.Read(Arguments, TEXT("SegmentLength"));
			const FNumberOverride Lanes = Numbers.Read(Arguments, TEXT("LaneCount"));
			Params.Origin = {Numbers.Read(Arguments, TEXT("LocationX")).Value, Numbers.Read(Arguments, TEXT("LocationY")).Value, Numbers.Read(Arguments, TEXT("LocationZ")).Value};
			Params.Yaw = Numbers.Read(Arguments, TEXT("RotationYaw")).Value;
			if (Numbers.Error.IsEmpty() && Count.bPresent && (Count.Value != FMath::RoundHalfFromZero(Count.Value) || Count.Value < 1 || Count.Value > ZorvekMCPBridgePcgCityLayout::MaxRoadSegments))
			{
				Numbers.Error = TEXT("SegmentCount must be a whole number from 1 to 100.");
			}
			if (Numbers.Error.IsEmpty() && Lanes.bPresent && (Lanes.Value != FMath::RoundHalfFromZero(Lanes.Value) || Lanes.Value < 1 || Lanes.Value > ZorvekMCPBridgeCityActorBlueprints::MaxLaneCount))
			{
				Numbers.Error = TEXT("LaneCount must be a whole number from 1 to 8.");
			}
			if (Numbers.Error.IsEmpty() && Length.bPresent && (Length.Value < ZorvekMCPBridgeCityActorBlueprints::MinLength || Length.Value > ZorvekMCPBridgeCityActorBlueprints::MaxLength))
			{
				Numbers.Error = TEXT("SegmentLength must be between 100 and 1000000 cm.");
			}
			Params.SegmentCount = Count.bPresent ? (int32)Count.Value : Params.SegmentCount;
			Params.Road.LaneCount = Lanes.bPresent ? (int32)Lanes.Value : Params.Road.LaneCount;
			// Whole centimetres, so the Blueprint's name tells its length exactly.
			Params.Road.Length = Length.bPresent ? FMath::RoundHalfFromZero(Length.Value) : Params.Road.Length;
			Params.Road.PackagePath = Params.PackagePath;
			Params.Road.AssetName = FString::Printf(TEXT("BP_ZorvekRoad_%dLane_%d"), Params.Road.LaneCount, FMath::RoundToInt(Params.Road.Length));
			Params.Error = Numbers.Error;
			return Params;
		}
	};

	// Reads a whole number in a range, refusing fractions with the key's name.
	int32 ReadPcgCityCount(FPcgCityNumbers& Numbers, const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, int32 Default, int32 Min, int32 Max)
	{
		const FNumberOverride Number = Numbers.Read(Arguments, Key);
		if (!Number.bPresent)
		{
			return Default;
		}
		if (Numbers.Error.IsEmpty() && (Number.Value != FMath::RoundHalfFromZero(Number.Value) || Number.Value < Min || Number.Value > Max))
		{
			Numbers.Error = FString::Printf(TEXT("%s must be a whole number from %d to %d."), Key, Min, Max);
		}
		return Numbers.Error.IsEmpty() ? (int32)Number.Value : Default;
	}

	struct FPcgCityGridParams
	{
		bool bAllowCurrentLevel = false;
		FString RecipeLabel;
		FString PackagePath;
		int32 Columns = 3;
		int32 Rows = 3;
		int32 MinFloors = 5;
		int32 MaxFloors = 30;
		int32 Seed = 42;
		ZorvekMCPBridgeCityActorBlueprints::FRoadParams Road;
		ZorvekMCPBridgeCityActorBlueprints::FIntersectionParams Intersection;
		FZorvekMCPBridgeVector Origin;
		FString Error;

		// A block's road is at most a hundred metres, so the largest grid stays inside the level.
		static constexpr double MaxRoadLength = 10000.0;

		static FPcgCityGridParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FPcgCityGridParams Params;
			Params.bAllowCurrentLevel = ReadBool(Arguments, TEXT("AllowCurrentLevel"), false);
			Params.RecipeLabel = ReadString(Arguments, TEXT("RecipeLabel"), FString()).TrimStartAndEnd();
			Params.RecipeLabel = Params.RecipeLabel.IsEmpty() ? FString(TEXT("ZorvekPCGCity")) : Params.RecipeLabel;
			Params.PackagePath = ReadString(Arguments, TEXT("PackagePath"), FString()).TrimStartAndEnd();
			Params.PackagePath = Params.PackagePath.IsEmpty() ? FString(TEXT("/Game/ZorvekPCG/City")) : Params.PackagePath;
			FPcgCityNumbers Numbers;
			const int32 MaxSide = ZorvekMCPBridgePcgCityLayout::MaxCityBlocksPerSide;
			Params.Columns = ReadPcgCityCount(Numbers, Arguments, TEXT("Columns"), Params.Columns, 1, MaxSide);
			Params.Rows = ReadPcgCityCount(Numbers, Arguments, TEXT("Rows"), Params.Rows, 1, MaxSide);
			Params.Road.LaneCount = ReadPcgCityCount(Numbers, Arguments, TEXT("LaneCount"), Params.Road.LaneCount, 1, ZorvekMCPBridgeCityActorBlueprints::MaxLaneCount);
			Params.MinFloors = ReadPcgCityCount(Numbers, Arguments, TEXT("MinFloors"), Params.MinFloors, 1, ZorvekMCPBridgeCityActorBlueprints::MaxFloors);
			Params.MaxFloors = ReadPcgCityCount(Numbers, Arguments, TEXT("MaxFloors"), Params.MaxFloors, 1, ZorvekMCPBridgeCityActorBlueprints::MaxFloors);
			Params.Seed = ReadPcgCityCount(Numbers, Arguments, TEXT("Seed"), Params.Seed, 0, 2147483647);
			const FNumberOverride Length = Numbers.Read(Arguments, TEXT("RoadLength"));
			Params.Origin = {Numbers.Read(Arguments, TEXT("LocationX")).Value, Numbers.Read(Arguments, TEXT("LocationY")).Value, Numbers.Read(Arguments, TEXT("LocationZ")).Value};
			if (Numbers.Error.IsEmpty() && Length.bPresent && (Length.Value < ZorvekMCPBridgeCityActorBlueprints::MinLength || Length.Value > MaxRoadLength))
			{
				Numbers.Error = TEXT("RoadLength must be between 100 and 10000 cm.");
			}
			if (Numbers.Error.IsEmpty() && Params.MinFloors > Params.MaxFloors)
			{
				Numbers.Error = TEXT("MinFloors must not be above MaxFloors.");
			}
			Params.Road.Length = Length.bPresent ? FMath::RoundHalfFromZero(Length.Value) : Params.Road.Length;
			Params.Road.PackagePath = Params.PackagePath;
			Params.Road.AssetName = FString::Printf(TEXT("BP_ZorvekRoad_%dLane_%d"), Params.Road.LaneCount, FMath::RoundToInt(Params.Road.Length));
			Params.Intersection.PackagePath = Params.PackagePath;
			Params.Intersection.LaneCount = Params.Road.LaneCount;
			Params.Intersection.AssetName = FString::Printf(TEXT("BP_ZorvekIntersection_%dLane"), Params.Road.LaneCount);
			Params.Error = Numbers.Error;
			return Params;
		}

		// The skyscraper of a block: its footprint is most of the block, its height the floors.
		ZorvekMCPBridgeCityActorBlueprints::FSkyscraperParams MakeSkyscraper(int32 Floors) const
		{
			ZorvekMCPBridgeCityActorBlueprints::FSkyscraperParams Skyscraper;
			Skyscraper.PackagePath = PackagePath;
			Skyscraper.Floors = Floors;
			Skyscraper.Width = FMath::RoundHalfFromZero(Road.Length * 0.8);
			Skyscraper.Depth = Skyscraper.Width;
			Skyscraper.AssetName = FString::Printf(TEXT("BP_ZorvekSkyscraper_%dF_%d"), Floors, FMath::RoundToInt(Skyscraper.Width));
			return Skyscraper;
		}
	};

	// A piece Blueprint made once and reused by later recipes: the generated class to place, or
	// the reason there is none.
	struct FPcgCityPieceClass
	{
		FString ObjectPath;
		FString ClassPath;
		bool bReused = false;
		FString Error;
	};

	FPcgCityPieceClass EnsurePcgCityPiece(IZorvekMCPBridgeEditorPort& Port, const FString& PackagePath, const FString& AssetName,
		TFunctionRef<ZorvekMCPBridgeCityActorBlueprints::FCityActorBuild()> Create)
	{
		FPcgCityPieceClass Piece;
		Piece.ObjectPath = FString::Printf(TEXT("%s/%s.%s"), *PackagePath, *AssetName, *AssetName);
		FZorvekMCPBridgeObjectHandle Blueprint = Port.GetObjects().LoadObject(Piece.ObjectPath);
		FZorvekMCPBridgeBlueprintSnapshot Snapshot;
		Piece.bReused = Blueprint.IsValid() && Port.GetBlueprints().ReadBlueprint(Blueprint, Snapshot);
		if (!Piece.bReused)
		{
			const ZorvekMCPBridgeCityActorBlueprints::FCityActorBuild Build = Create();
			if (!Build.Build.bSuccess)
			{
				Piece.Error = FString::Printf(TEXT("The Blueprint %s could not be made (%s): %s"), *AssetName, *Build.Build.FailedStep, *Build.Build.Error);
				return Piece;
			}
			Blueprint = Port.GetObjects().LoadObject(Build.Build.ObjectPath);
		}
		// Placement uses the class as it is now, as editor_place_actor does (SkipSave).
		Port.GetBlueprints().Compile(Blueprint, 0x20);
		if (!Blueprint.IsValid() || !Port.GetBlueprints().ReadBlueprint(Blueprint, Snapshot) || Snapshot.GeneratedClassPath.IsEmpty())
		{
			Piece.Error = FString::Printf(TEXT("Could not resolve Blueprint actor class from '%s'."), *Piece.ObjectPath);
			return Piece;
		}
		Piece.ClassPath = Snapshot.GeneratedClassPath;
		return Piece;
	}

	// The classes a city's placements use: the road, the intersection and one skyscraper per floor
	// count, each Blueprint made once and reused afterwards; "blueprints" lists them.
	struct FPcgCityPieceClasses
	{
		FString Road;
		FString Intersection;
		TMap<int32, FString> SkyscrapersByFloors;
		TArray<TSharedPtr<FJsonValue>> BlueprintsJson;

		const FString& Get(const ZorvekMCPBridgePcgCityLayout::FCityPlacement& Placement) const
		{
			using ZorvekMCPBridgePcgCityLayout::ECityPiece;
			return Placement.Piece == ECityPiece::Intersection ? Intersection : (Placement.Piece == ECityPiece::Road ? Road : SkyscrapersByFloors[Placement.Floors]);
		}
	};

	bool EnsurePcgCityPieceClasses(IZorvekMCPBridgeEditorPort& Port, const FPcgCityGridParams& Params, const TArray<ZorvekMCPBridgePcgCityLayout::FCityPlacement>& Placements,
		FPcgCityPieceClasses& OutClasses, FString& OutError)
	{
		using namespace ZorvekMCPBridgeCityActorBlueprints;
		const auto Ensure = [&](const FString& AssetName, TFunctionRef<FCityActorBuild()> Create, FString& OutClassPath)
		{
			const FPcgCityPieceClass Piece = EnsurePcgCityPiece(Port, Params.PackagePath, AssetName, Create);
			if (!Piece.Error.IsEmpty())
			{
				OutError = Piece.Error;
				return false;
			}
			TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
			Entry->SetStringField(TEXT("object_path"), Piece.ObjectPath);
			Entry->SetBoolField(TEXT("reused"), Piece.bReused);
			OutClasses.BlueprintsJson.Add(MakeShared<FJsonValueObject>(Entry));
			OutClassPath = Piece.ClassPath;
			return true;
		};
		if (!Ensure(Params.Road.AssetName, [&]() { return CreateRoadActor(Port, Params.Road); }, OutClasses.Road)
			|| !Ensure(Params.Intersection.AssetName, [&]() { return CreateIntersectionActor(Port, Params.Intersection); }, OutClasses.Intersection))
		{
			return false;
		}
		for (const ZorvekMCPBridgePcgCityLayout::FCityPlacement& Placement : Placements)
		{
			if (Placement.Piece == ZorvekMCPBridgePcgCityLayout::ECityPiece::Skyscraper && !OutClasses.SkyscrapersByFloors.Contains(Placement.Floors))
			{
				const FSkyscraperParams Skyscraper = Params.MakeSkyscraper(Placement.Floors);
				FString ClassPath;
				if (!Ensure(Skyscraper.AssetName, [&]() { return CreateSkyscraperActor(Port, Skyscraper); }, ClassPath))
				{
					return false;
				}
				OutClasses.SkyscrapersByFloors.Add(Placement.Floors, ClassPath);
			}
		}
		return true;
	}

	TSharedPtr<FJsonObject> FailPcgCityTool(const TCHAR* SuccessKey, const FString& Message)
	{
		TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
		Payload->SetBoolField(TEXT("success"), false);
		if (FCString::Strcmp(SuccessKey, TEXT("success")) != 0)
		{
			Payload->SetBoolField(SuccessKey, false);
		}
		Payload->SetStringField(TEXT("error"), Message);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, true);
	}

	TSharedPtr<FJsonObject> MakePcgCityRectangleJson(const ZorvekMCPBridgePcgSplineBounds::FRectangle& Rectangle)
	{
		TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
		Object->SetNumberField(TEXT("length"), Rectangle.Length);
		Object->SetNumberField(TEXT("width"), Rectangle.Width);
		return Object;
	}

	// SetActorLabelUnique's numbering for a label the client chose or the default: the label when
	// no actor carries it, else the first of Label2, Label3... that is free.
	FString MakePcgCityUniqueLabel(const IZorvekMCPBridgeWorld& World, const FString& Label)
	{
		TSet<FString> Taken;
		for (const FZorvekMCPBridgeActorEntry& Actor : World.GetAllLevelActors())
		{
			Taken.Add(Actor.Label.ToLower());
		}
		FString Candidate = Label;
		for (int32 Number = 2; Taken.Contains(Candidate.ToLower()); ++Number)
		{
			Candidate = FString::Printf(TEXT("%s%d"), *Label, Number);
		}
		return Candidate;
	}

	// The actor the client named with its spline component, or the refusal.
	struct FPcgCitySplineActor
	{
		FZorvekMCPBridgeActorEntry Entry;
		FZorvekMCPBridgeActorSnapshot Snapshot;
		FZorvekMCPBridgeObjectHandle Spline;
		FString Error;
	};

	FPcgCitySplineActor FindPcgCitySplineActor(IZorvekMCPBridgeEditorPort& Port, const FString& ActorNameOrLabel)
	{
		FPcgCitySplineActor Found;
		IZorvekMCPBridgeWorld& World = Port.GetWorld();
		if (!ZorvekMCPBridgeActorReadback::FindActor(World, ActorNameOrLabel, Found.Entry) || !World.ReadActor(Found.Entry.Actor, Found.Snapshot))
		{
			Found.Error = ZorvekMCPBridgeActorReadback::MakeActorNotFoundMessage(ActorNameOrLabel);
			return Found;
		}
		Found.Spline = ZorvekMCPBridgePcgSplineBounds::FindSplineComponent(Port, Found.Snapshot);
		if (!Found.Spline.IsValid())
		{
			Found.Error = FString::Printf(TEXT("Actor '%s' has no spline component."), *Found.Entry.Label);
		}
		return Found;
	}

	FString FindPcgCityComponentName(const FZorvekMCPBridgeActorSnapshot& Snapshot, FZorvekMCPBridgeObjectHandle Component)
	{
		for (const FZorvekMCPBridgeActorComponentSnapshot& Candidate : Snapshot.Components)
		{
			if (Candidate.Component == Component)
			{
				return Candidate.Name;
			}
		}
		return FString();
	}

	// Reads the spline and the actor after a change, for the result.
	bool ReadPcgCitySplineResult(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Actor, FZorvekMCPBridgeObjectHandle Spline, bool bSelected,
		TSharedPtr<FJsonObject>& OutActor, TSharedPtr<FJsonObject>& OutSpline, FString& OutError)
	{
		FZorvekMCPBridgeActorSnapshot Snapshot;
		ZorvekMCPBridgePcgSplineBounds::FSplineState State;
		if (!Port.GetWorld().ReadActor(Actor, Snapshot) || !ZorvekMCPBridgePcgSplineBounds::ReadSpline(Port, Spline, State, OutError))
		{
			OutError = OutError.IsEmpty() ? TEXT("The spline bounds actor could not be read back.") : OutError;
			return false;
		}
		OutActor = ZorvekMCPBridgeActorReadback::MakeActorReadback(Snapshot, bSelected);
		OutSpline = ZorvekMCPBridgePcgSplineBounds::MakeSplineBoundsJson(FindPcgCityComponentName(Snapshot, Spline), State);
		return true;
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgCityTools::HandleCreateSplineBoundsActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* const ToolName = TEXT("pcg_create_spline_bounds_actor");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, ToolName, Arguments, TEXT("create_spline_bounds_actor"));
	}
	const FPcgCityCreateSplineParams Params = FPcgCityCreateSplineParams::Read(Arguments);
	if (!Params.bAllowCurrentLevel)
	{
		return FailPcgCityTool(TEXT("created"), TEXT("pcg_create_spline_bounds_actor requires AllowCurrentLevel=true because this mutates the current editor world."));
	}
	FZorvekMCPBridgeWorldInfo WorldInfo;
	if (!World.IsActorSubsystemAvailable() || !World.GetEditorWorld(WorldInfo))
	{
		return FailPcgCityTool(TEXT("created"), TEXT("Editor actor subsystem or editor world is unavailable."));
	}
	if (!Params.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("created"), Params.Error);
	}
	FZorvekMCPBridgeTypeInfo SplineClass;
	if (!Port.GetObjects().LoadClass(ZorvekMCPBridgePcgSplineBounds::SplineComponentClassPath, SplineClass))
	{
		return FailPcgCityTool(TEXT("created"), TEXT("The engine's spline component class /Script/Engine.SplineComponent could not be loaded."));
	}

	ZorvekMCPBridgePcgSplineBounds::FRectangle Rectangle;
	Rectangle.Length = Params.Length.bPresent ? Params.Length.Value : ZorvekMCPBridgePcgSplineBounds::DefaultLength;
	Rectangle.Width = Params.Width.bPresent ? Params.Width.Value : ZorvekMCPBridgePcgSplineBounds::DefaultWidth;
	const FZorvekMCPBridgeVector Location = {Params.LocationX.Value, Params.LocationY.Value, Params.LocationZ.Value};
	FZorvekMCPBridgeRotator Rotation;
	Rotation.Yaw = Params.RotationYaw.Value;
	const FZorvekMCPBridgeObjectHandle Actor = World.SpawnActorFromClass(ZorvekMCPBridgePcgSplineBounds::ActorClassPath, Location, Rotation);
	if (!Actor.IsValid())
	{
		return FailPcgCityTool(TEXT("created"), FString::Printf(TEXT("Could not spawn actor of class '%s'."), ZorvekMCPBridgePcgSplineBounds::ActorClassPath));
	}
	// From here a failure takes the new actor away again, so nothing half made stays behind.
	FString Error;
	const FZorvekMCPBridgeObjectHandle Spline = World.AddInstanceComponent(Actor, SplineClass.Path, ZorvekMCPBridgePcgSplineBounds::ComponentName);
	if (!Spline.IsValid())
	{
		Error = TEXT("Could not add a spline component to the spline bounds actor.");
	}
	else if (!ZorvekMCPBridgePcgSplineBounds::WriteRectangle(Port, Spline, Rectangle, Error))
	{
		Error = Error.IsEmpty() ? TEXT("Could not write the spline rectangle.") : Error;
	}
	if (!Error.IsEmpty())
	{
		World.DestroyActors({Actor});
		return FailPcgCityTool(TEXT("created"), Error);
	}
	// An empty actor may spawn without a root, so the spawn location had nothing to move: the
	// transform is set again now that the spline can carry it.
	FZorvekMCPBridgeTransform Transform;
	Transform.Location = Location;
	Transform.Rotation = Rotation;
	World.SetActorTransform(Actor, Transform);
	World.SetActorLabel(Actor, MakePcgCityUniqueLabel(World, Params.ActorLabel.IsEmpty() ? FString(ZorvekMCPBridgePcgSplineBounds::DefaultLabel) : Params.ActorLabel));
	World.AddActorTags(Actor, {FName(ZorvekMCPBridgeActorReadback::BridgeTag), FName(ZorvekMCPBridgeActorReadback::ReproTag),
		FName(ZorvekMCPBridgeActorReadback::VisualPcgTag), FName(ZorvekMCPBridgePcgSplineBounds::SplineBoundsTag)});
	World.SelectNothing();
	World.SetActorSelectionState(Actor, true);

	TSharedPtr<FJsonObject> ActorJson;
	TSharedPtr<FJsonObject> SplineJson;
	const bool bRead = ReadPcgCitySplineResult(Port, Actor, Spline, true, ActorJson, SplineJson, Error);
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), bRead);
	Payload->SetBoolField(TEXT("created"), true);
	Payload->SetBoolField(TEXT("placed"), true);
	Payload->SetObjectField(TEXT("actor"), ActorJson.IsValid() ? ActorJson : MakeShared<FJsonObject>());
	if (bRead)
	{
		Payload->SetObjectField(TEXT("spline_bounds"), SplineJson);
	}
	else
	{
		Payload->SetStringField(TEXT("error"), Error);
	}
	Payload->SetStringField(TEXT("note"), PcgCityNotSampledNote);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, !bRead);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgCityTools::HandleInspectSplineBoundsActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* const ToolName = TEXT("pcg_inspect_spline_bounds_actor");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, ToolName, Arguments, TEXT("inspect_spline_bounds_actor"));
	}
	const FString ActorNameOrLabel = ReadString(Arguments, TEXT("ActorNameOrLabel"), FString());
	const FPcgCitySplineActor Found = FindPcgCitySplineActor(Port, ActorNameOrLabel);
	if (!Found.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("success"), Found.Error);
	}
	TSharedPtr<FJsonObject> ActorJson;
	TSharedPtr<FJsonObject> SplineJson;
	FString Error;
	if (!ReadPcgCitySplineResult(Port, Found.Entry.Actor, Found.Spline, World.GetSelectedLevelActors().Contains(Found.Entry.Actor), ActorJson, SplineJson, Error))
	{
		return FailPcgCityTool(TEXT("success"), Error);
	}
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetBoolField(TEXT("is_spline_bounds_actor"), Found.Entry.Tags.Contains(FName(ZorvekMCPBridgePcgSplineBounds::SplineBoundsTag)));
	Payload->SetObjectField(TEXT("actor"), ActorJson);
	Payload->SetObjectField(TEXT("spline_bounds"), SplineJson);
	Payload->SetStringField(TEXT("note"), PcgCityNotSampledNote);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgCityTools::HandleSetSplineBoundsActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* const ToolName = TEXT("pcg_set_spline_bounds_actor");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, ToolName, Arguments, TEXT("set_spline_bounds_actor"));
	}
	const FPcgCitySetSplineParams Params = FPcgCitySetSplineParams::Read(Arguments);
	if (!Params.bAllowCurrentLevel)
	{
		return FailPcgCityTool(TEXT("updated"), TEXT("pcg_set_spline_bounds_actor requires AllowCurrentLevel=true because this mutates the current editor world."));
	}
	if (!Params.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("updated"), Params.Error);
	}
	if (!Params.Length.bPresent && !Params.Width.bPresent)
	{
		return FailPcgCityTool(TEXT("updated"), TEXT("pcg_set_spline_bounds_actor requires Length or Width."));
	}
	const FPcgCitySplineActor Found = FindPcgCitySplineActor(Port, Params.ActorNameOrLabel);
	if (!Found.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("updated"), Found.Error);
	}
	// Only the bridge's own bounds actors are reshaped; a spline the user drew stays as it is.
	if (!Found.Entry.Tags.Contains(FName(ZorvekMCPBridgePcgSplineBounds::SplineBoundsTag)))
	{
		return FailPcgCityTool(TEXT("updated"), FString::Printf(TEXT("'%s' is not a spline bounds actor from pcg_create_spline_bounds_actor."), *Found.Entry.Label));
	}
	ZorvekMCPBridgePcgSplineBounds::FSplineState Before;
	FString Error;
	if (!ZorvekMCPBridgePcgSplineBounds::ReadSpline(Port, Found.Spline, Before, Error))
	{
		return FailPcgCityTool(TEXT("updated"), Error);
	}
	const ZorvekMCPBridgePcgSplineBounds::FRectangle Previous = ZorvekMCPBridgePcgSplineBounds::MeasureRectangle(Before);
	ZorvekMCPBridgePcgSplineBounds::FRectangle Rectangle = Previous;
	Rectangle.Length = Params.Length.bPresent ? Params.Length.Value : Previous.Length;
	Rectangle.Width = Params.Width.bPresent ? Params.Width.Value : Previous.Width;
	if (!ZorvekMCPBridgePcgSplineBounds::WriteRectangle(Port, Found.Spline, Rectangle, Error))
	{
		return FailPcgCityTool(TEXT("updated"), Error);
	}

	TSharedPtr<FJsonObject> ActorJson;
	TSharedPtr<FJsonObject> SplineJson;
	const bool bRead = ReadPcgCitySplineResult(Port, Found.Entry.Actor, Found.Spline, World.GetSelectedLevelActors().Contains(Found.Entry.Actor), ActorJson, SplineJson, Error);
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), bRead);
	Payload->SetBoolField(TEXT("updated"), true);
	Payload->SetObjectField(TEXT("previous_rectangle"), MakePcgCityRectangleJson(Previous));
	Payload->SetObjectField(TEXT("actor"), ActorJson.IsValid() ? ActorJson : MakeShared<FJsonObject>());
	if (bRead)
	{
		Payload->SetObjectField(TEXT("spline_bounds"), SplineJson);
	}
	else
	{
		Payload->SetStringField(TEXT("error"), Error);
	}
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, !bRead);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgCityTools::HandleRunRoadRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* const ToolName = TEXT("pcg_run_road_recipe");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, ToolName, Arguments, TEXT("run_road_recipe"));
	}
	const FPcgCityRoadRecipeParams Params = FPcgCityRoadRecipeParams::Read(Arguments);
	if (!Params.bAllowCurrentLevel)
	{
		return FailPcgCityTool(TEXT("placed"), TEXT("pcg_run_road_recipe requires AllowCurrentLevel=true because this mutates the current editor world."));
	}
	FZorvekMCPBridgeWorldInfo WorldInfo;
	if (!World.IsActorSubsystemAvailable() || !World.GetEditorWorld(WorldInfo))
	{
		return FailPcgCityTool(TEXT("placed"), TEXT("Editor actor subsystem or editor world is unavailable."));
	}
	if (!Params.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("placed"), Params.Error);
	}
	ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec Spec;
	FString Error;
	if (!ZorvekMCPBridgeCityActorBlueprints::MakeRoadSpec(Params.Road, Spec, Error))
	{
		return FailPcgCityTool(TEXT("placed"), Error);
	}
	// A recipe is placed once per label: running it again would duplicate every segment.
	const FName RecipeTag(*FString::Printf(TEXT("ZorvekPCGRoad_%s"), *Params.RecipeLabel));
	for (const FZorvekMCPBridgeActorEntry& Existing : World.GetAllLevelActors())
	{
		if (Existing.Tags.Contains(RecipeTag))
		{
			return FailPcgCityTool(TEXT("placed"), FString::Printf(TEXT("A road recipe labelled '%s' is already in the level; remove it with editor_cleanup_repro_actors (Filter %s) or choose another RecipeLabel."), *Params.RecipeLabel, *Params.RecipeLabel));
		}
	}

	// The road Blueprint: made once per lanes and length, reused by later recipes.
	TArray<TSharedPtr<FJsonValue>> Steps;
	const auto AddStep = [&Steps](const TCHAR* Step, bool bSuccess, const FString& Detail)
	{
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("step"), Step);
		Entry->SetBoolField(TEXT("success"), bSuccess);
		Entry->SetStringField(TEXT("detail"), Detail);
		Steps.Add(MakeShared<FJsonValueObject>(Entry));
	};
	const FString ObjectPath = FString::Printf(TEXT("%s/%s.%s"), *Params.PackagePath, *Params.Road.AssetName, *Params.Road.AssetName);
	FZorvekMCPBridgeObjectHandle Blueprint = Port.GetObjects().LoadObject(ObjectPath);
	FZorvekMCPBridgeBlueprintSnapshot Snapshot;
	const bool bReused = Blueprint.IsValid() && Port.GetBlueprints().ReadBlueprint(Blueprint, Snapshot);
	if (bReused)
	{
		AddStep(TEXT("road_blueprint"), true, FString::Printf(TEXT("Reused %s."), *ObjectPath));
	}
	else
	{
		const ZorvekMCPBridgeCityActorBlueprints::FCityActorBuild Build = ZorvekMCPBridgeCityActorBlueprints::CreateRoadActor(Port, Params.Road);
		if (!Build.Build.bSuccess)
		{
			return FailPcgCityTool(TEXT("placed"), FString::Printf(TEXT("The road Blueprint could not be made (%s): %s"), *Build.Build.FailedStep, *Build.Build.Error));
		}
		Blueprint = Port.GetObjects().LoadObject(Build.Build.ObjectPath);
		AddStep(TEXT("road_blueprint"), true, FString::Printf(TEXT("Created %s."), *Build.Build.ObjectPath));
	}
	// Placement uses the class as it is now, as editor_place_actor does.
	Port.GetBlueprints().Compile(Blueprint, 0x20);
	if (!Blueprint.IsValid() || !Port.GetBlueprints().ReadBlueprint(Blueprint, Snapshot) || Snapshot.GeneratedClassPath.IsEmpty())
	{
		return FailPcgCityTool(TEXT("placed"), FString::Printf(TEXT("Could not resolve Blueprint actor class from '%s'."), *ObjectPath));
	}

	const TArray<ZorvekMCPBridgePcgCityLayout::FPiecePlacement> Placements = ZorvekMCPBridgePcgCityLayout::MakeRoadStrip(Params.Origin, Params.Yaw, Params.SegmentCount, Params.Road.Length);
	TArray<FZorvekMCPBridgeObjectHandle> Placed;
	for (int32 Index = 0; Index < Placements.Num(); ++Index)
	{
		FZorvekMCPBridgeRotator Rotation;
		Rotation.Yaw = Placements[Index].Yaw;
		const FZorvekMCPBridgeObjectHandle Actor = World.SpawnActorFromClass(Snapshot.GeneratedClassPath, Placements[Index].Location, Rotation);
		if (!Actor.IsValid())
		{
			// Nothing of a half-placed strip stays behind.
			World.DestroyActors(Placed);
			return FailPcgCityTool(TEXT("placed"), FString::Printf(TEXT("Could not spawn actor of class '%s'."), *Snapshot.GeneratedClassPath));
		}
		Placed.Add(Actor);
		World.SetActorLabel(Actor, FString::Printf(TEXT("%s_Road%02d"), *Params.RecipeLabel, Index + 1));
		World.AddActorTags(Actor, {FName(ZorvekMCPBridgeActorReadback::BridgeTag), FName(ZorvekMCPBridgeActorReadback::ReproTag),
			FName(ZorvekMCPBridgeActorReadback::VisualPcgTag), RecipeTag});
	}
	AddStep(TEXT("place_segments"), true, FString::Printf(TEXT("Placed %d road segments."), Placed.Num()));

	TArray<TSharedPtr<FJsonValue>> Actors;
	for (const FZorvekMCPBridgeObjectHandle& Actor : Placed)
	{
		if (const TSharedPtr<FJsonObject> Readback = ZorvekMCPBridgeActorReadback::ReadActorReadback(World, Actor, false))
		{
			Actors.Add(MakeShared<FJsonValueObject>(Readback));
		}
	}
	TSharedPtr<FJsonObject> RoadJson = MakeShared<FJsonObject>();
	RoadJson->SetStringField(TEXT("object_path"), ObjectPath);
	RoadJson->SetBoolField(TEXT("reused"), bReused);
	RoadJson->SetNumberField(TEXT("lane_count"), Params.Road.LaneCount);
	RoadJson->SetNumberField(TEXT("segment_length"), Params.Road.Length);
	RoadJson->SetObjectField(TEXT("footprint"), ZorvekMCPBridgeCityActorBlueprints::MakeFootprintJson(ZorvekMCPBridgeCityActorBlueprints::GetFootprint(Spec)));

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetBoolField(TEXT("placed"), true);
	Payload->SetStringField(TEXT("recipe_label"), Params.RecipeLabel);
	Payload->SetStringField(TEXT("recipe_tag"), RecipeTag.ToString());
	Payload->SetNumberField(TEXT("segment_count"), Placed.Num());
	Payload->SetNumberField(TEXT("strip_length"), Params.Road.Length * Placed.Num());
	Payload->SetObjectField(TEXT("road_blueprint"), RoadJson);
	Payload->SetArrayField(TEXT("steps"), Steps);
	Payload->SetArrayField(TEXT("actors"), Actors);
	Payload->SetStringField(TEXT("cleanup"), FString::Printf(TEXT("editor_cleanup_repro_actors with Filter %s removes this strip."), *Params.RecipeLabel));
	Payload->SetStringField(TEXT("note"), TEXT("A straight strip of road segment actors; roads are not sampled along splines and form no editable network."));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgCityTools::HandleRunCityLayoutRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	using namespace ZorvekMCPBridgeCityActorBlueprints;
	using ZorvekMCPBridgePcgCityLayout::ECityPiece;
	const TCHAR* const ToolName = TEXT("pcg_run_city_layout_recipe");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, ToolName, Arguments, TEXT("run_city_layout_recipe"));
	}
	const FPcgCityGridParams Params = FPcgCityGridParams::Read(Arguments);
	if (!Params.bAllowCurrentLevel)
	{
		return FailPcgCityTool(TEXT("placed"), TEXT("pcg_run_city_layout_recipe requires AllowCurrentLevel=true because this mutates the current editor world."));
	}
	FZorvekMCPBridgeWorldInfo WorldInfo;
	if (!World.IsActorSubsystemAvailable() || !World.GetEditorWorld(WorldInfo))
	{
		return FailPcgCityTool(TEXT("placed"), TEXT("Editor actor subsystem or editor world is unavailable."));
	}
	if (!Params.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("placed"), Params.Error);
	}
	// Every piece's parameters are checked before any Blueprint is made.
	ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec RoadSpec;
	ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec IntersectionSpec;
	ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec SkyscraperSpec;
	FString Error;
	if (!MakeRoadSpec(Params.Road, RoadSpec, Error) || !MakeIntersectionSpec(Params.Intersection, IntersectionSpec, Error)
		|| !MakeSkyscraperSpec(Params.MakeSkyscraper(Params.MaxFloors), SkyscraperSpec, Error))
	{
		return FailPcgCityTool(TEXT("placed"), Error);
	}
	const FName RecipeTag(*FString::Printf(TEXT("ZorvekPCGCity_%s"), *Params.RecipeLabel));
	for (const FZorvekMCPBridgeActorEntry& Existing : World.GetAllLevelActors())
	{
		if (Existing.Tags.Contains(RecipeTag))
		{
			return FailPcgCityTool(TEXT("placed"), FString::Printf(TEXT("A city recipe labelled '%s' is already in the level; remove it with editor_cleanup_repro_actors (Filter %s) or choose another RecipeLabel."), *Params.RecipeLabel, *Params.RecipeLabel));
		}
	}

	const double IntersectionSize = GetFootprint(IntersectionSpec).Length;
	const TArray<ZorvekMCPBridgePcgCityLayout::FCityPlacement> Placements = ZorvekMCPBridgePcgCityLayout::MakeCityGrid(Params.Origin, Params.Columns, Params.Rows,
		Params.Road.Length, IntersectionSize, Params.MinFloors, Params.MaxFloors, Params.Seed);

	// The pieces' Blueprints: the road, the intersection, and one skyscraper per floor count used.
	FPcgCityPieceClasses Classes;
	const bool bPiecesReady = EnsurePcgCityPieceClasses(Port, Params, Placements, Classes, Error);
	if (!bPiecesReady)
	{
		return FailPcgCityTool(TEXT("placed"), Error);
	}

	const FName PieceTags[] = {FName(TEXT("ZorvekPCGCityIntersection")), FName(TEXT("ZorvekPCGCityRoad")), FName(TEXT("ZorvekPCGCitySkyscraper"))};
	const TCHAR* const PieceWords[] = {TEXT("intersection"), TEXT("road"), TEXT("skyscraper")};
	int32 Counts[3] = {0, 0, 0};
	TArray<FZorvekMCPBridgeObjectHandle> Placed;
	TArray<TSharedPtr<FJsonValue>> Pieces;
	for (const ZorvekMCPBridgePcgCityLayout::FCityPlacement& Placement : Placements)
	{
		const int32 Kind = (int32)Placement.Piece;
		const FString& ClassPath = Classes.Get(Placement);
		FZorvekMCPBridgeRotator Rotation;
		Rotation.Yaw = Placement.Yaw;
		const FZorvekMCPBridgeObjectHandle Actor = World.SpawnActorFromClass(ClassPath, Placement.Location, Rotation);
		if (!Actor.IsValid())
		{
			// Nothing of a half-placed city stays behind.
			World.DestroyActors(Placed);
			return FailPcgCityTool(TEXT("placed"), FString::Printf(TEXT("Could not spawn actor of class '%s'."), *ClassPath));
		}
		Placed.Add(Actor);
		++Counts[Kind];
		const TCHAR* const Word = Placement.Piece == ECityPiece::Road ? (Placement.Yaw == 0.0 ? TEXT("RoadX") : TEXT("RoadY"))
			: (Placement.Piece == ECityPiece::Intersection ? TEXT("Intersection") : TEXT("Tower"));
		const FString Label = FString::Printf(TEXT("%s_%s_%d_%d"), *Params.RecipeLabel, Word, Placement.Column, Placement.Row);
		World.SetActorLabel(Actor, Label);
		World.AddActorTags(Actor, {FName(ZorvekMCPBridgeActorReadback::BridgeTag), FName(ZorvekMCPBridgeActorReadback::ReproTag),
			FName(ZorvekMCPBridgeActorReadback::VisualPcgTag), RecipeTag, PieceTags[Kind]});

		TSharedPtr<FJsonObject> Piece = MakeShared<FJsonObject>();
		Piece->SetStringField(TEXT("label"), Label);
		Piece->SetStringField(TEXT("piece"), PieceWords[Kind]);
		Piece->SetNumberField(TEXT("column"), Placement.Column);
		Piece->SetNumberField(TEXT("row"), Placement.Row);
		Piece->SetObjectField(TEXT("location"), ZorvekMCPBridgeActorReadback::MakeVectorJson(Placement.Location));
		Piece->SetNumberField(TEXT("yaw"), Placement.Yaw);
		if (Placement.Piece == ECityPiece::Skyscraper)
		{
			Piece->SetNumberField(TEXT("floors"), Placement.Floors);
		}
		Pieces.Add(MakeShared<FJsonValueObject>(Piece));
	}

	TSharedPtr<FJsonObject> CountsJson = MakeShared<FJsonObject>();
	CountsJson->SetNumberField(TEXT("intersections"), Counts[0]);
	CountsJson->SetNumberField(TEXT("roads"), Counts[1]);
	CountsJson->SetNumberField(TEXT("skyscrapers"), Counts[2]);
	CountsJson->SetNumberField(TEXT("total"), Placed.Num());
	TSharedPtr<FJsonObject> Grid = MakeShared<FJsonObject>();
	Grid->SetNumberField(TEXT("columns"), Params.Columns);
	Grid->SetNumberField(TEXT("rows"), Params.Rows);
	Grid->SetNumberField(TEXT("road_length"), Params.Road.Length);
	Grid->SetNumberField(TEXT("intersection_size"), IntersectionSize);
	Grid->SetNumberField(TEXT("pitch"), Params.Road.Length + IntersectionSize);
	Grid->SetNumberField(TEXT("lane_count"), Params.Road.LaneCount);
	Grid->SetNumberField(TEXT("min_floors"), Params.MinFloors);
	Grid->SetNumberField(TEXT("max_floors"), Params.MaxFloors);
	Grid->SetNumberField(TEXT("seed"), Params.Seed);
	Grid->SetObjectField(TEXT("origin"), ZorvekMCPBridgeActorReadback::MakeVectorJson(Params.Origin));

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetBoolField(TEXT("placed"), true);
	Payload->SetStringField(TEXT("recipe_label"), Params.RecipeLabel);
	Payload->SetStringField(TEXT("recipe_tag"), RecipeTag.ToString());
	Payload->SetObjectField(TEXT("grid"), Grid);
	Payload->SetObjectField(TEXT("counts"), CountsJson);
	Payload->SetArrayField(TEXT("blueprints"), Classes.BlueprintsJson);
	Payload->SetArrayField(TEXT("pieces"), Pieces);
	Payload->SetStringField(TEXT("cleanup"), FString::Printf(TEXT("editor_cleanup_repro_actors with Filter %s removes this city."), *Params.RecipeLabel));
	Payload->SetStringField(TEXT("note"), TEXT("A straight grid of road, intersection and skyscraper actors; the roads form no editable network and are not sampled along splines."));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

namespace
{
	// A whole number an update may leave out.
	struct FPcgCityUpdateCount
	{
		bool bSet = false;
		int32 Value = 0;

		int32 Get(int32 Default) const
		{
			return bSet ? Value : Default;
		}
	};

	// What an update asks for: the city's label and the values to change.
	struct FPcgCityUpdateParams
	{
		bool bAllowCurrentLevel = false;
		FString RecipeLabel;
		FPcgCityUpdateCount Columns;
		FPcgCityUpdateCount Rows;
		FPcgCityUpdateCount MinFloors;
		FPcgCityUpdateCount MaxFloors;
		FPcgCityUpdateCount Seed;
		FString Error;

		static FPcgCityUpdateParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FPcgCityUpdateParams Params;
			Params.bAllowCurrentLevel = ReadBool(Arguments, TEXT("AllowCurrentLevel"), false);
			Params.RecipeLabel = ReadString(Arguments, TEXT("RecipeLabel"), FString()).TrimStartAndEnd();
			Params.RecipeLabel = Params.RecipeLabel.IsEmpty() ? FString(TEXT("ZorvekPCGCity")) : Params.RecipeLabel;
			FPcgCityNumbers Numbers;
			const auto ReadOptional = [&Numbers, &Arguments](const TCHAR* Key, int32 Min, int32 Max)
			{
				FPcgCityUpdateCount Count;
				Count.bSet = Arguments.IsValid() && Arguments->HasField(Key);
				Count.Value = ReadPcgCityCount(Numbers, Arguments, Key, 0, Min, Max);
				Count.bSet = Count.bSet && Numbers.Error.IsEmpty();
				return Count;
			};
			const int32 MaxSide = ZorvekMCPBridgePcgCityLayout::MaxCityBlocksPerSide;
			Params.Columns = ReadOptional(TEXT("Columns"), 1, MaxSide);
			Params.Rows = ReadOptional(TEXT("Rows"), 1, MaxSide);
			Params.MinFloors = ReadOptional(TEXT("MinFloors"), 1, ZorvekMCPBridgeCityActorBlueprints::MaxFloors);
			Params.MaxFloors = ReadOptional(TEXT("MaxFloors"), 1, ZorvekMCPBridgeCityActorBlueprints::MaxFloors);
			Params.Seed = ReadOptional(TEXT("Seed"), 0, 2147483647);
			Params.Error = Numbers.Error;
			if (Params.Error.IsEmpty() && !Params.Columns.bSet && !Params.Rows.bSet && !Params.MinFloors.bSet && !Params.MaxFloors.bSet && !Params.Seed.bSet)
			{
				Params.Error = TEXT("pcg_update_city_layout_recipe requires at least one of Columns, Rows, MinFloors, MaxFloors or Seed.");
			}
			return Params;
		}

		bool RedrawsFloors() const
		{
			return MinFloors.bSet || MaxFloors.bSet || Seed.bSet;
		}
	};

	// The generated class's asset name: "/Game/P/BP_X.BP_X_C" gives "BP_X".
	FString GetPcgCityAssetName(const FString& ClassPath)
	{
		FString Name = FPaths::GetExtension(ClassPath);
		Name.RemoveFromEnd(TEXT("_C"));
		return Name;
	}

	// A whole number read between a prefix and a marker of a piece Blueprint's name, as the
	// recipe names them (BP_ZorvekRoad_<Lanes>Lane_<Length>, BP_ZorvekSkyscraper_<Floors>F_<Width>).
	bool ParsePcgCityNameNumber(const FString& Text, const TCHAR* Prefix, const TCHAR* Marker, int32& OutBefore, int32& OutAfter)
	{
		FString Rest = Text;
		FString Before;
		FString After;
		if (!Rest.RemoveFromStart(Prefix) || !Rest.Split(Marker, &Before, &After) || !Before.IsNumeric() || !After.IsNumeric())
		{
			return false;
		}
		OutBefore = FCString::Atoi(*Before);
		OutAfter = FCString::Atoi(*After);
		return true;
	}

	// A city as the level holds it, read back from its actors: the grid by the intersections'
	// labels, the origin by the first one, the road Blueprint by a road, the floors by the towers.
	struct FPcgCityInLevel
	{
		TMap<FString, FZorvekMCPBridgeObjectHandle> ActorsByLabel;
		TMap<FString, FString> ClassByLabel;
		int32 Columns = 0;
		int32 Rows = 0;
		bool bHasOrigin = false;
		FZorvekMCPBridgeVector Origin;
		FString PackagePath;
		int32 LaneCount = 0;
		int32 RoadLength = 0;
		int32 MinFloors = ZorvekMCPBridgeCityActorBlueprints::MaxFloors + 1;
		int32 MaxFloors = 0;
		FString Error;
	};

	FPcgCityInLevel ReadPcgCityInLevel(const IZorvekMCPBridgeWorld& World, const FString& RecipeLabel, const FName& RecipeTag)
	{
		FPcgCityInLevel City;
		const FString IntersectionPrefix = RecipeLabel + TEXT("_Intersection_");
		for (const FZorvekMCPBridgeActorEntry& Entry : World.GetAllLevelActors())
		{
			FZorvekMCPBridgeActorSnapshot Snapshot;
			if (!Entry.Tags.Contains(RecipeTag) || !World.ReadActor(Entry.Actor, Snapshot))
			{
				continue;
			}
			City.ActorsByLabel.Add(Entry.Label, Entry.Actor);
			City.ClassByLabel.Add(Entry.Label, Snapshot.ClassPath);
			const FString AssetName = GetPcgCityAssetName(Snapshot.ClassPath);
			int32 First = 0;
			int32 Second = 0;
			if (Entry.Label.StartsWith(IntersectionPrefix, ESearchCase::CaseSensitive)
				&& ParsePcgCityNameNumber(Entry.Label, *IntersectionPrefix, TEXT("_"), First, Second))
			{
				City.Columns = FMath::Max(City.Columns, First);
				City.Rows = FMath::Max(City.Rows, Second);
				if (First == 0 && Second == 0)
				{
					City.bHasOrigin = true;
					City.Origin = Snapshot.RootTransform.Location;
				}
			}
			else if (ParsePcgCityNameNumber(AssetName, TEXT("BP_ZorvekRoad_"), TEXT("Lane_"), First, Second))
			{
				City.LaneCount = First;
				City.RoadLength = Second;
				City.PackagePath = FPaths::GetPath(Snapshot.ClassPath);
			}
			else if (ParsePcgCityNameNumber(AssetName, TEXT("BP_ZorvekSkyscraper_"), TEXT("F_"), First, Second))
			{
				City.MinFloors = FMath::Min(City.MinFloors, First);
				City.MaxFloors = FMath::Max(City.MaxFloors, First);
			}
		}
		if (City.ActorsByLabel.IsEmpty())
		{
			City.Error = FString::Printf(TEXT("No city recipe labelled '%s' is in the level; place one with pcg_run_city_layout_recipe first."), *RecipeLabel);
		}
		else if (!City.bHasOrigin || City.Columns < 1 || City.Rows < 1 || City.LaneCount < 1 || City.RoadLength < 1 || City.MaxFloors < 1)
		{
			City.Error = FString::Printf(TEXT("The city '%s' in the level is incomplete (its first intersection, a road or a tower is missing); remove it with editor_cleanup_repro_actors (Filter %s) and run pcg_run_city_layout_recipe again."), *RecipeLabel, *RecipeLabel);
		}
		return City;
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgCityTools::HandleUpdateCityLayoutRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	using namespace ZorvekMCPBridgeCityActorBlueprints;
	using ZorvekMCPBridgePcgCityLayout::ECityPiece;
	const TCHAR* const ToolName = TEXT("pcg_update_city_layout_recipe");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, ToolName, Arguments, TEXT("update_city_layout_recipe"));
	}
	const FPcgCityUpdateParams Update = FPcgCityUpdateParams::Read(Arguments);
	if (!Update.bAllowCurrentLevel)
	{
		return FailPcgCityTool(TEXT("updated"), TEXT("pcg_update_city_layout_recipe requires AllowCurrentLevel=true because this mutates the current editor world."));
	}
	FZorvekMCPBridgeWorldInfo WorldInfo;
	if (!World.IsActorSubsystemAvailable() || !World.GetEditorWorld(WorldInfo))
	{
		return FailPcgCityTool(TEXT("updated"), TEXT("Editor actor subsystem or editor world is unavailable."));
	}
	if (!Update.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("updated"), Update.Error);
	}
	const FName RecipeTag(*FString::Printf(TEXT("ZorvekPCGCity_%s"), *Update.RecipeLabel));
	const FPcgCityInLevel City = ReadPcgCityInLevel(World, Update.RecipeLabel, RecipeTag);
	if (!City.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("updated"), City.Error);
	}

	// The city as it should be: what the update names, the rest as the level holds it (floors
	// within the range of the towers already standing).
	FPcgCityGridParams Params;
	Params.RecipeLabel = Update.RecipeLabel;
	Params.PackagePath = City.PackagePath;
	Params.Columns = Update.Columns.Get(City.Columns);
	Params.Rows = Update.Rows.Get(City.Rows);
	Params.MinFloors = Update.MinFloors.Get(City.MinFloors);
	Params.MaxFloors = Update.MaxFloors.Get(City.MaxFloors);
	Params.Seed = Update.Seed.Get(Params.Seed);
	if (Params.MinFloors > Params.MaxFloors)
	{
		return FailPcgCityTool(TEXT("updated"), TEXT("MinFloors must not be above MaxFloors."));
	}
	Params.Origin = City.Origin;
	Params.Road.LaneCount = City.LaneCount;
	Params.Road.Length = City.RoadLength;
	Params.Road.PackagePath = Params.PackagePath;
	Params.Road.AssetName = FString::Printf(TEXT("BP_ZorvekRoad_%dLane_%d"), Params.Road.LaneCount, City.RoadLength);
	Params.Intersection.PackagePath = Params.PackagePath;
	Params.Intersection.LaneCount = Params.Road.LaneCount;
	Params.Intersection.AssetName = FString::Printf(TEXT("BP_ZorvekIntersection_%dLane"), Params.Road.LaneCount);
	ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec RoadSpec;
	ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec IntersectionSpec;
	ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec SkyscraperSpec;
	FString Error;
	if (!MakeRoadSpec(Params.Road, RoadSpec, Error) || !MakeIntersectionSpec(Params.Intersection, IntersectionSpec, Error)
		|| !MakeSkyscraperSpec(Params.MakeSkyscraper(Params.MaxFloors), SkyscraperSpec, Error))
	{
		return FailPcgCityTool(TEXT("updated"), Error);
	}
	const double IntersectionSize = GetFootprint(IntersectionSpec).Length;
	TArray<ZorvekMCPBridgePcgCityLayout::FCityPlacement> Placements = ZorvekMCPBridgePcgCityLayout::MakeCityGrid(Params.Origin, Params.Columns, Params.Rows,
		Params.Road.Length, IntersectionSize, Params.MinFloors, Params.MaxFloors, Params.Seed);

	const auto LabelOf = [&Params](const ZorvekMCPBridgePcgCityLayout::FCityPlacement& Placement)
	{
		const TCHAR* const Word = Placement.Piece == ECityPiece::Road ? (Placement.Yaw == 0.0 ? TEXT("RoadX") : TEXT("RoadY"))
			: (Placement.Piece == ECityPiece::Intersection ? TEXT("Intersection") : TEXT("Tower"));
		return FString::Printf(TEXT("%s_%s_%d_%d"), *Params.RecipeLabel, Word, Placement.Column, Placement.Row);
	};
	// A standing tower keeps its floors unless the update redraws them.
	if (!Update.RedrawsFloors())
	{
		for (ZorvekMCPBridgePcgCityLayout::FCityPlacement& Placement : Placements)
		{
			int32 Floors = 0;
			int32 Width = 0;
			const FString* const ClassPath = Placement.Piece == ECityPiece::Skyscraper ? City.ClassByLabel.Find(LabelOf(Placement)) : nullptr;
			if (ClassPath && ParsePcgCityNameNumber(GetPcgCityAssetName(*ClassPath), TEXT("BP_ZorvekSkyscraper_"), TEXT("F_"), Floors, Width))
			{
				Placement.Floors = Floors;
			}
		}
	}

	// The pieces' Blueprints, made once and reused as by the run.
	FPcgCityPieceClasses Classes;
	const bool bPiecesReady = EnsurePcgCityPieceClasses(Port, Params, Placements, Classes, Error);
	if (!bPiecesReady)
	{
		return FailPcgCityTool(TEXT("updated"), Error);
	}

	// New and replaced pieces are spawned first; only when all stand are the old ones removed,
	// so a failed spawn leaves the city as it was.
	const FName PieceTags[] = {FName(TEXT("ZorvekPCGCityIntersection")), FName(TEXT("ZorvekPCGCityRoad")), FName(TEXT("ZorvekPCGCitySkyscraper"))};
	const TCHAR* const PieceWords[] = {TEXT("intersection"), TEXT("road"), TEXT("skyscraper")};
	TArray<TSharedPtr<FJsonValue>> Pieces;
	TSet<FString> TargetLabels;
	TArray<FZorvekMCPBridgeObjectHandle> Spawned;
	TArray<TPair<FZorvekMCPBridgeObjectHandle, FString>> SpawnedLabels;
	TArray<FZorvekMCPBridgeObjectHandle> Replaced;
	TArray<FString> AddedLabels;
	TArray<FString> ReplacedLabels;
	int32 KeptCount = 0;
	int32 Counts[3] = {0, 0, 0};
	for (const ZorvekMCPBridgePcgCityLayout::FCityPlacement& Placement : Placements)
	{
		const int32 Kind = (int32)Placement.Piece;
		const FString& ClassPath = Classes.Get(Placement);
		const FString Label = LabelOf(Placement);
		TargetLabels.Add(Label);
		++Counts[Kind];
		TSharedPtr<FJsonObject> Piece = MakeShared<FJsonObject>();
		Piece->SetStringField(TEXT("label"), Label);
		Piece->SetStringField(TEXT("piece"), PieceWords[Kind]);
		Piece->SetNumberField(TEXT("column"), Placement.Column);
		Piece->SetNumberField(TEXT("row"), Placement.Row);
		Piece->SetObjectField(TEXT("location"), ZorvekMCPBridgeActorReadback::MakeVectorJson(Placement.Location));
		Piece->SetNumberField(TEXT("yaw"), Placement.Yaw);
		if (Placement.Piece == ECityPiece::Skyscraper)
		{
			Piece->SetNumberField(TEXT("floors"), Placement.Floors);
		}
		Pieces.Add(MakeShared<FJsonValueObject>(Piece));
		const FString* const ExistingClass = City.ClassByLabel.Find(Label);
		if (ExistingClass && *ExistingClass == ClassPath)
		{
			++KeptCount;
			continue;
		}
		FZorvekMCPBridgeRotator Rotation;
		Rotation.Yaw = Placement.Yaw;
		const FZorvekMCPBridgeObjectHandle Actor = World.SpawnActorFromClass(ClassPath, Placement.Location, Rotation);
		if (!Actor.IsValid())
		{
			World.DestroyActors(Spawned);
			return FailPcgCityTool(TEXT("updated"), FString::Printf(TEXT("Could not spawn actor of class '%s'."), *ClassPath));
		}
		Spawned.Add(Actor);
		SpawnedLabels.Add(TPair<FZorvekMCPBridgeObjectHandle, FString>(Actor, Label));
		World.AddActorTags(Actor, {FName(ZorvekMCPBridgeActorReadback::BridgeTag), FName(ZorvekMCPBridgeActorReadback::ReproTag),
			FName(ZorvekMCPBridgeActorReadback::VisualPcgTag), RecipeTag, PieceTags[Kind]});
		if (ExistingClass)
		{
			Replaced.Add(City.ActorsByLabel[Label]);
			ReplacedLabels.Add(Label);
		}
		else
		{
			AddedLabels.Add(Label);
		}
	}
	TArray<FZorvekMCPBridgeObjectHandle> Removed = Replaced;
	TArray<FString> RemovedLabels;
	for (const TPair<FString, FZorvekMCPBridgeObjectHandle>& Existing : City.ActorsByLabel)
	{
		if (!TargetLabels.Contains(Existing.Key))
		{
			Removed.Add(Existing.Value);
			RemovedLabels.Add(Existing.Key);
		}
	}
	World.DestroyActors(Removed);
	// Labels are set once the old holders are gone, so a replacement takes the exact label.
	for (const TPair<FZorvekMCPBridgeObjectHandle, FString>& Entry : SpawnedLabels)
	{
		World.SetActorLabel(Entry.Key, Entry.Value);
	}
	RemovedLabels.Sort();

	const auto ToJsonArray = [](const TArray<FString>& Labels)
	{
		TArray<TSharedPtr<FJsonValue>> Values;
		for (const FString& Label : Labels)
		{
			Values.Add(MakeShared<FJsonValueString>(Label));
		}
		return Values;
	};
	TSharedPtr<FJsonObject> Previous = MakeShared<FJsonObject>();
	Previous->SetNumberField(TEXT("columns"), City.Columns);
	Previous->SetNumberField(TEXT("rows"), City.Rows);
	Previous->SetNumberField(TEXT("min_floors"), City.MinFloors);
	Previous->SetNumberField(TEXT("max_floors"), City.MaxFloors);
	Previous->SetNumberField(TEXT("actor_count"), City.ActorsByLabel.Num());
	TSharedPtr<FJsonObject> Grid = MakeShared<FJsonObject>();
	Grid->SetNumberField(TEXT("columns"), Params.Columns);
	Grid->SetNumberField(TEXT("rows"), Params.Rows);
	Grid->SetNumberField(TEXT("road_length"), Params.Road.Length);
	Grid->SetNumberField(TEXT("intersection_size"), IntersectionSize);
	Grid->SetNumberField(TEXT("pitch"), Params.Road.Length + IntersectionSize);
	Grid->SetNumberField(TEXT("lane_count"), Params.Road.LaneCount);
	Grid->SetNumberField(TEXT("min_floors"), Params.MinFloors);
	Grid->SetNumberField(TEXT("max_floors"), Params.MaxFloors);
	Grid->SetNumberField(TEXT("seed"), Params.Seed);
	Grid->SetObjectField(TEXT("origin"), ZorvekMCPBridgeActorReadback::MakeVectorJson(Params.Origin));
	TSharedPtr<FJsonObject> CountsJson = MakeShared<FJsonObject>();
	CountsJson->SetNumberField(TEXT("intersections"), Counts[0]);
	CountsJson->SetNumberField(TEXT("roads"), Counts[1]);
	CountsJson->SetNumberField(TEXT("skyscrapers"), Counts[2]);
	CountsJson->SetNumberField(TEXT("total"), Placements.Num());
	TSharedPtr<FJsonObject> Changes = MakeShared<FJsonObject>();
	Changes->SetNumberField(TEXT("kept"), KeptCount);
	Changes->SetArrayField(TEXT("added"), ToJsonArray(AddedLabels));
	Changes->SetArrayField(TEXT("replaced"), ToJsonArray(ReplacedLabels));
	Changes->SetArrayField(TEXT("removed"), ToJsonArray(RemovedLabels));

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetBoolField(TEXT("updated"), true);
	Payload->SetStringField(TEXT("recipe_label"), Params.RecipeLabel);
	Payload->SetStringField(TEXT("recipe_tag"), RecipeTag.ToString());
	Payload->SetObjectField(TEXT("previous"), Previous);
	Payload->SetObjectField(TEXT("grid"), Grid);
	Payload->SetObjectField(TEXT("counts"), CountsJson);
	Payload->SetObjectField(TEXT("changes"), Changes);
	Payload->SetArrayField(TEXT("blueprints"), Classes.BlueprintsJson);
	Payload->SetArrayField(TEXT("pieces"), Pieces);
	Payload->SetStringField(TEXT("cleanup"), FString::Printf(TEXT("editor_cleanup_repro_actors with Filter %s removes this city."), *Params.RecipeLabel));
	Payload->SetStringField(TEXT("note"), TEXT("The city was changed in place: pieces that still fit were kept, new blocks added, towers of other floors replaced and pieces outside the grid removed; road length and lanes stay as placed."));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

namespace
{
	// A strip proof segment aims at this length when the client gives no count.
	constexpr double PcgCitySplineRoadTargetSegment = 2000.0;

	struct FPcgCitySplineRoadParams
	{
		bool bAllowCurrentLevel = false;
		FString ActorNameOrLabel;
		FString RecipeLabel;
		FString PackagePath;
		int32 LaneCount = 2;
		int32 SegmentCount = 0;
		FString Error;

		static FPcgCitySplineRoadParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FPcgCitySplineRoadParams Params;
			Params.bAllowCurrentLevel = ReadBool(Arguments, TEXT("AllowCurrentLevel"), false);
			Params.ActorNameOrLabel = ReadString(Arguments, TEXT("ActorNameOrLabel"), FString()).TrimStartAndEnd();
			Params.RecipeLabel = ReadString(Arguments, TEXT("RecipeLabel"), FString()).TrimStartAndEnd();
			Params.RecipeLabel = Params.RecipeLabel.IsEmpty() ? FString(TEXT("ZorvekPCGSplineRoad")) : Params.RecipeLabel;
			Params.PackagePath = ReadString(Arguments, TEXT("PackagePath"), FString()).TrimStartAndEnd();
			Params.PackagePath = Params.PackagePath.IsEmpty() ? FString(TEXT("/Game/ZorvekPCG/Roads")) : Params.PackagePath;
			FPcgCityNumbers Numbers;
			Params.LaneCount = ReadPcgCityCount(Numbers, Arguments, TEXT("LaneCount"), Params.LaneCount, 1, ZorvekMCPBridgeCityActorBlueprints::MaxLaneCount);
			Params.SegmentCount = ReadPcgCityCount(Numbers, Arguments, TEXT("SegmentCount"), 0, 1, ZorvekMCPBridgePcgCityLayout::MaxRoadSegments);
			Params.Error = Numbers.Error;
			if (Params.Error.IsEmpty() && Params.ActorNameOrLabel.IsEmpty())
			{
				Params.Error = TEXT("pcg_run_spline_road_proof requires ActorNameOrLabel (a spline bounds actor from pcg_create_spline_bounds_actor).");
			}
			return Params;
		}
	};

	double PcgCityDistance2D(const FZorvekMCPBridgeVector& From, const FZorvekMCPBridgeVector& To)
	{
		return FMath::Sqrt((To.X - From.X) * (To.X - From.X) + (To.Y - From.Y) * (To.Y - From.Y));
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgCityTools::HandleRunSplineRoadProof(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* const ToolName = TEXT("pcg_run_spline_road_proof");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, ToolName, Arguments, TEXT("run_spline_road_proof"));
	}
	const FPcgCitySplineRoadParams Params = FPcgCitySplineRoadParams::Read(Arguments);
	if (!Params.bAllowCurrentLevel)
	{
		return FailPcgCityTool(TEXT("placed"), TEXT("pcg_run_spline_road_proof requires AllowCurrentLevel=true because this mutates the current editor world."));
	}
	FZorvekMCPBridgeWorldInfo WorldInfo;
	if (!World.IsActorSubsystemAvailable() || !World.GetEditorWorld(WorldInfo))
	{
		return FailPcgCityTool(TEXT("placed"), TEXT("Editor actor subsystem or editor world is unavailable."));
	}
	if (!Params.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("placed"), Params.Error);
	}
	const FPcgCitySplineActor Found = FindPcgCitySplineActor(Port, Params.ActorNameOrLabel);
	if (!Found.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("placed"), Found.Error);
	}
	// Only the bridge's rectangles are read as bounds: a drawn spline's curve is not sampled.
	if (!Found.Entry.Tags.Contains(FName(ZorvekMCPBridgePcgSplineBounds::SplineBoundsTag)))
	{
		return FailPcgCityTool(TEXT("placed"), FString::Printf(TEXT("'%s' is not a spline bounds actor from pcg_create_spline_bounds_actor."), *Found.Entry.Label));
	}
	ZorvekMCPBridgePcgSplineBounds::FSplineState State;
	FString Error;
	if (!ZorvekMCPBridgePcgSplineBounds::ReadSpline(Port, Found.Spline, State, Error) || State.WorldPoints.Num() != ZorvekMCPBridgePcgSplineBounds::RectanglePointCount)
	{
		return FailPcgCityTool(TEXT("placed"), Error.IsEmpty() ? FString(TEXT("The spline bounds actor does not hold a four-point rectangle.")) : Error);
	}
	// The rectangle in the world: its first side runs along its length, the second across it, so
	// the actor's scale is taken as it is; the strip turns with the actor's yaw.
	const TArray<FZorvekMCPBridgeVector>& Corners = State.WorldPoints;
	const double Length = PcgCityDistance2D(Corners[0], Corners[1]);
	const double Width = PcgCityDistance2D(Corners[1], Corners[2]);
	const double Yaw = Found.Snapshot.RootTransform.Rotation.Yaw;
	const FZorvekMCPBridgeVector Centre = {(Corners[0].X + Corners[2].X) * 0.5, (Corners[0].Y + Corners[2].Y) * 0.5, (Corners[0].Z + Corners[2].Z) * 0.5};

	const int32 SegmentCount = Params.SegmentCount > 0 ? Params.SegmentCount
		: FMath::Clamp(-FMath::FloorToInt(-(Length / PcgCitySplineRoadTargetSegment - 1e-6)), 1, ZorvekMCPBridgePcgCityLayout::MaxRoadSegments);
	// Whole centimetres, rounded down so the strip stays inside the rectangle.
	const double SegmentLength = (double)FMath::FloorToInt(Length / SegmentCount + 1e-6);
	if (SegmentLength < ZorvekMCPBridgeCityActorBlueprints::MinLength)
	{
		return FailPcgCityTool(TEXT("placed"), FString::Printf(TEXT("%d segments do not fit a rectangle %.0f cm long: each segment needs at least 100 cm. Use fewer segments or a longer rectangle."), SegmentCount, Length));
	}
	ZorvekMCPBridgeCityActorBlueprints::FRoadParams Road;
	Road.PackagePath = Params.PackagePath;
	Road.LaneCount = Params.LaneCount;
	Road.Length = SegmentLength;
	Road.AssetName = FString::Printf(TEXT("BP_ZorvekRoad_%dLane_%d"), Road.LaneCount, FMath::RoundToInt(Road.Length));
	ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec Spec;
	if (!ZorvekMCPBridgeCityActorBlueprints::MakeRoadSpec(Road, Spec, Error))
	{
		return FailPcgCityTool(TEXT("placed"), Error);
	}
	const ZorvekMCPBridgeCityActorBlueprints::FFootprint Footprint = ZorvekMCPBridgeCityActorBlueprints::GetFootprint(Spec);
	if (Footprint.Width > Width + 1e-6)
	{
		return FailPcgCityTool(TEXT("placed"), FString::Printf(TEXT("A %d-lane road is %.0f cm wide and does not fit the rectangle's width of %.0f cm. Use fewer lanes or widen the bounds with pcg_set_spline_bounds_actor."), Road.LaneCount, Footprint.Width, Width));
	}
	const FName RecipeTag(*FString::Printf(TEXT("ZorvekPCGSplineRoad_%s"), *Params.RecipeLabel));
	for (const FZorvekMCPBridgeActorEntry& Existing : World.GetAllLevelActors())
	{
		if (Existing.Tags.Contains(RecipeTag))
		{
			return FailPcgCityTool(TEXT("placed"), FString::Printf(TEXT("A spline road proof labelled '%s' is already in the level; remove it with editor_cleanup_repro_actors (Filter %s) or choose another RecipeLabel."), *Params.RecipeLabel, *Params.RecipeLabel));
		}
	}

	const FPcgCityPieceClass Piece = EnsurePcgCityPiece(Port, Params.PackagePath, Road.AssetName, [&]() { return ZorvekMCPBridgeCityActorBlueprints::CreateRoadActor(Port, Road); });
	if (!Piece.Error.IsEmpty())
	{
		return FailPcgCityTool(TEXT("placed"), Piece.Error);
	}
	// The strip runs along the rectangle's length through its centre, from one short side.
	const double StripLength = SegmentLength * SegmentCount;
	const double DirectionX = (Corners[1].X - Corners[0].X) / Length;
	const double DirectionY = (Corners[1].Y - Corners[0].Y) / Length;
	const FZorvekMCPBridgeVector Start = {Centre.X - DirectionX * StripLength * 0.5, Centre.Y - DirectionY * StripLength * 0.5, Centre.Z};
	const TArray<ZorvekMCPBridgePcgCityLayout::FPiecePlacement> Placements = ZorvekMCPBridgePcgCityLayout::MakeRoadStrip(Start, Yaw, SegmentCount, SegmentLength);
	TArray<FZorvekMCPBridgeObjectHandle> Placed;
	for (int32 Index = 0; Index < Placements.Num(); ++Index)
	{
		FZorvekMCPBridgeRotator Rotation;
		Rotation.Yaw = Placements[Index].Yaw;
		const FZorvekMCPBridgeObjectHandle Actor = World.SpawnActorFromClass(Piece.ClassPath, Placements[Index].Location, Rotation);
		if (!Actor.IsValid())
		{
			World.DestroyActors(Placed);
			return FailPcgCityTool(TEXT("placed"), FString::Printf(TEXT("Could not spawn actor of class '%s'."), *Piece.ClassPath));
		}
		Placed.Add(Actor);
		World.SetActorLabel(Actor, FString::Printf(TEXT("%s_Road%02d"), *Params.RecipeLabel, Index + 1));
		World.AddActorTags(Actor, {FName(ZorvekMCPBridgeActorReadback::BridgeTag), FName(ZorvekMCPBridgeActorReadback::ReproTag),
			FName(ZorvekMCPBridgeActorReadback::VisualPcgTag), RecipeTag});
	}

	TArray<TSharedPtr<FJsonValue>> Actors;
	for (const FZorvekMCPBridgeObjectHandle& Actor : Placed)
	{
		if (const TSharedPtr<FJsonObject> Readback = ZorvekMCPBridgeActorReadback::ReadActorReadback(World, Actor, false))
		{
			Actors.Add(MakeShared<FJsonValueObject>(Readback));
		}
	}
	TSharedPtr<FJsonObject> RoadJson = MakeShared<FJsonObject>();
	RoadJson->SetStringField(TEXT("object_path"), Piece.ObjectPath);
	RoadJson->SetBoolField(TEXT("reused"), Piece.bReused);
	RoadJson->SetNumberField(TEXT("lane_count"), Road.LaneCount);
	RoadJson->SetNumberField(TEXT("segment_length"), SegmentLength);
	RoadJson->SetObjectField(TEXT("footprint"), ZorvekMCPBridgeCityActorBlueprints::MakeFootprintJson(Footprint));
	TSharedPtr<FJsonObject> Bounds = MakeShared<FJsonObject>();
	Bounds->SetStringField(TEXT("actor_label"), Found.Entry.Label);
	Bounds->SetNumberField(TEXT("length"), Length);
	Bounds->SetNumberField(TEXT("width"), Width);
	Bounds->SetNumberField(TEXT("yaw"), Yaw);
	Bounds->SetObjectField(TEXT("centre"), ZorvekMCPBridgeActorReadback::MakeVectorJson(Centre));
	TSharedPtr<FJsonObject> Unsupported = MakeShared<FJsonObject>();
	Unsupported->SetStringField(TEXT("capability"), TEXT("pcg_spline_road_sampling"));
	Unsupported->SetStringField(TEXT("reason"), TEXT("The spline is read as a rectangle's corners only; roads are never sampled or bent along a spline curve."));

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetBoolField(TEXT("placed"), true);
	Payload->SetStringField(TEXT("recipe_label"), Params.RecipeLabel);
	Payload->SetStringField(TEXT("recipe_tag"), RecipeTag.ToString());
	Payload->SetObjectField(TEXT("spline_bounds"), Bounds);
	Payload->SetNumberField(TEXT("segment_count"), Placed.Num());
	Payload->SetNumberField(TEXT("strip_length"), StripLength);
	Payload->SetObjectField(TEXT("road_blueprint"), RoadJson);
	Payload->SetArrayField(TEXT("actors"), Actors);
	Payload->SetObjectField(TEXT("unsupported"), Unsupported);
	Payload->SetStringField(TEXT("cleanup"), FString::Printf(TEXT("editor_cleanup_repro_actors with Filter %s removes this strip; the spline bounds actor stays until removed by its own label."), *Params.RecipeLabel));
	Payload->SetStringField(TEXT("note"), PcgCityNotSampledNote);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}
