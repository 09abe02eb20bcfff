#include "Tools/ZorvekMCPBridgePrimitiveActorTools.h"

#include "Blueprint/ZorvekMCPBridgeCityActorBlueprints.h"
#include "Blueprint/ZorvekMCPBridgePrimitiveActors.h"
#include "Dom/JsonValue.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"
#include "World/ZorvekMCPBridgeWorldTransformArguments.h"

// Helpers inside the domain namespace, so a unity build does not share them with other files.
namespace ZorvekMCPBridgePrimitiveActorTools
{
namespace
{
	using namespace ZorvekMCPBridgePrimitiveActors;
	using namespace ZorvekMCPBridgeCityActorBlueprints;

	TSharedPtr<FJsonObject> FailPrimitiveActorTool(const FString& Message)
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(Message, true);
	}

	// A key under its name or, when absent, under its legacy name (blueprint_create's aliases).
	FString ReadPrimitiveActorString(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, const TCHAR* LegacyKey = nullptr)
	{
		const FString Fallback = LegacyKey ? ZorvekMCPBridgeToolArguments::ReadString(Arguments, LegacyKey, FString()) : FString();
		return ZorvekMCPBridgeToolArguments::ReadString(Arguments, Key, Fallback).TrimStartAndEnd();
	}

	// The three parts of a nested transform value ({"X","Y","Z"} / {"Pitch","Yaw","Roll"}, or an
	// array of three numbers) copied into the flat keys the world tools read, unless a flat key is
	// given too (the flat key wins). Returns the refusal, empty when usable.
	FString FlattenPrimitiveActorVector(const TSharedPtr<FJsonObject>& Part, const FString& PartName, const TCHAR* Key, const TCHAR* const (&Axes)[3],
		const TCHAR* const (&FlatKeys)[3], const TSharedPtr<FJsonObject>& OutFlat)
	{
		const TSharedPtr<FJsonValue> Value = Part->TryGetField(Key);
		if (!Value.IsValid() || Value->Type == EJson::Null)
		{
			return FString();
		}
		TSharedPtr<FJsonValue> Components[3];
		if (Value->Type == EJson::Object)
		{
			const TSharedPtr<FJsonObject> Object = Value->AsObject();
			for (int32 Axis = 0; Axis < 3; ++Axis)
			{
				Components[Axis] = Object->TryGetField(Axes[Axis]);
			}
		}
		else if (Value->Type == EJson::Array && Value->AsArray().Num() == 3)
		{
			for (int32 Axis = 0; Axis < 3; ++Axis)
			{
				Components[Axis] = Value->AsArray()[Axis];
			}
		}
		else
		{
			return FString::Printf(TEXT("Part '%s': %s must be an object {%s, %s, %s} or an array of three numbers."), *PartName, Key, Axes[0], Axes[1], Axes[2]);
		}
		for (int32 Axis = 0; Axis < 3; ++Axis)
		{
			if (Components[Axis].IsValid() && !OutFlat->HasField(FlatKeys[Axis]))
			{
				OutFlat->SetField(FlatKeys[Axis], Components[Axis]);
			}
		}
		return FString();
	}

	const TCHAR* const PrimitiveActorVectorAxes[3] = { TEXT("X"), TEXT("Y"), TEXT("Z") };
	const TCHAR* const PrimitiveActorRotatorAxes[3] = { TEXT("Pitch"), TEXT("Yaw"), TEXT("Roll") };
	const TCHAR* const PrimitiveActorLocationKeys[3] = { TEXT("LocationX"), TEXT("LocationY"), TEXT("LocationZ") };
	const TCHAR* const PrimitiveActorRotationKeys[3] = { TEXT("RotationPitch"), TEXT("RotationYaw"), TEXT("RotationRoll") };
	const TCHAR* const PrimitiveActorScaleKeys[3] = { TEXT("ScaleX"), TEXT("ScaleY"), TEXT("ScaleZ") };

	// One entry of Parts. False with the message; checks that need the editor come later.
	bool ReadPrimitiveActorPart(const TSharedPtr<FJsonValue>& Value, int32 Index, FPrimitivePart& OutPart, FString& OutError)
	{
		if (!Value.IsValid() || Value->Type != EJson::Object)
		{
			OutError = FString::Printf(TEXT("Parts[%d] must be an object with Name and Shape."), Index);
			return false;
		}
		const TSharedPtr<FJsonObject> Part = Value->AsObject();
		OutPart.Name = ReadPrimitiveActorString(Part, TEXT("Name"));
		if (OutPart.Name.IsEmpty())
		{
			OutError = FString::Printf(TEXT("Parts[%d] requires Name."), Index);
			return false;
		}
		const FString Shape = ReadPrimitiveActorString(Part, TEXT("Shape"), TEXT("PrimitiveShape"));
		if (Shape.IsEmpty())
		{
			OutError = FString::Printf(TEXT("Part '%s' requires Shape: Cube, Sphere, Cylinder, Cone, or Plane."), *OutPart.Name);
			return false;
		}
		if (!ParseShape(Shape, OutPart.Shape))
		{
			OutError = FString::Printf(TEXT("Part '%s': Unsupported Shape '%s'. Supported shapes: Cube, Sphere, Cylinder, Cone, Plane."), *OutPart.Name, *Shape);
			return false;
		}
		// Transforms: the world tools' flat keys, or nested values copied into them.
		TSharedPtr<FJsonObject> Flat = MakeShared<FJsonObject>();
		const TCHAR* const* const FlatKeySets[] = { PrimitiveActorLocationKeys, PrimitiveActorRotationKeys, PrimitiveActorScaleKeys };
		for (const TCHAR* const* Keys : FlatKeySets)
		{
			for (int32 Axis = 0; Axis < 3; ++Axis)
			{
				if (const TSharedPtr<FJsonValue> Field = Part->TryGetField(Keys[Axis]))
				{
					Flat->SetField(Keys[Axis], Field);
				}
			}
		}
		OutError = FlattenPrimitiveActorVector(Part, OutPart.Name, TEXT("Location"), PrimitiveActorVectorAxes, PrimitiveActorLocationKeys, Flat);
		if (OutError.IsEmpty())
		{
			OutError = FlattenPrimitiveActorVector(Part, OutPart.Name, TEXT("Rotation"), PrimitiveActorRotatorAxes, PrimitiveActorRotationKeys, Flat);
		}
		if (OutError.IsEmpty())
		{
			OutError = FlattenPrimitiveActorVector(Part, OutPart.Name, TEXT("Scale"), PrimitiveActorVectorAxes, PrimitiveActorScaleKeys, Flat);
		}
		if (!OutError.IsEmpty())
		{
			return false;
		}
		const ZorvekMCPBridgeWorldTransformArguments::FTransformOverrides Overrides = ZorvekMCPBridgeWorldTransformArguments::Read(Flat);
		if (!Overrides.IsValid())
		{
			OutError = FString::Printf(TEXT("Part '%s': %s"), *OutPart.Name, *Overrides.Error);
			return false;
		}
		OutPart.Transform = Overrides.ApplyTo(FZorvekMCPBridgeTransform());
		OutPart.MaterialPath = ReadPrimitiveActorString(Part, TEXT("MaterialPath"));
		OutPart.ParentName = ReadPrimitiveActorString(Part, TEXT("ParentName"), TEXT("ParentComponentName"));
		return true;
	}

	struct FCreatePrimitiveActorParams
	{
		FPrimitiveActorSpec Spec;
		FString Preset;
		// The first refusal while reading; the call stops with it before anything else.
		FString Error;

		static FCreatePrimitiveActorParams Read(IZorvekMCPBridgeEditorPort& Port, const TSharedPtr<FJsonObject>& Arguments)
		{
			FCreatePrimitiveActorParams Params;
			FPrimitiveActorSpec& Spec = Params.Spec;
			Spec.PackagePath = ReadPrimitiveActorString(Arguments, TEXT("PackagePath"), TEXT("InPackagePath"));
			Spec.AssetName = ReadPrimitiveActorString(Arguments, TEXT("AssetName"), TEXT("InAssetName"));
			Spec.ParentClassPath = ReadPrimitiveActorString(Arguments, TEXT("ParentClassPath"), TEXT("InParentClassPath"));
			Spec.bCompile = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("Compile"), true);
			Params.Preset = ReadPrimitiveActorString(Arguments, TEXT("Preset"));
			// A preset's parts come first; Parts adds to them.
			if (!Params.Preset.IsEmpty() && !MakePresetParts(Port, Params.Preset, Spec.Parts, Params.Error))
			{
				return Params;
			}
			const TSharedPtr<FJsonValue> Parts = Arguments.IsValid() ? Arguments->TryGetField(TEXT("Parts")) : nullptr;
			if (Parts.IsValid() && Parts->Type != EJson::Null)
			{
				if (Parts->Type != EJson::Array)
				{
					Params.Error = TEXT("Parts must be an array of part objects with Name, Shape, and optional Location, Rotation, Scale, MaterialPath and ParentName.");
					return Params;
				}
				const TArray<TSharedPtr<FJsonValue>>& Entries = Parts->AsArray();
				// Counted before reading, so a huge list is refused without work.
				if (Spec.Parts.Num() + Entries.Num() > MaxParts)
				{
					Params.Error = FString::Printf(TEXT("Too many parts: %d (at most %d)."), Spec.Parts.Num() + Entries.Num(), MaxParts);
					return Params;
				}
				for (int32 Index = 0; Index < Entries.Num(); ++Index)
				{
					FPrimitivePart Part;
					if (!ReadPrimitiveActorPart(Entries[Index], Index, Part, Params.Error))
					{
						return Params;
					}
					Spec.Parts.Add(MoveTemp(Part));
				}
			}
			if (Spec.Parts.IsEmpty() && !Spec.PackagePath.IsEmpty() && !Spec.AssetName.IsEmpty())
			{
				Params.Error = TEXT("blueprint_create_primitive_actor requires Parts or a Preset (DummyTree or VisualActor).");
			}
			return Params;
		}
	};

	// A decimal with an optional exponent ("2000", "-1.5", "1e9"). IsNumeric takes a lone sign or
	// dot, as the engine's does; those are no numbers here.
	bool IsCityNumberText(const FString& Text)
	{
		const auto IsMantissa = [](const FString& Part)
		{
			return Part.IsNumeric() && Part != TEXT("-") && Part != TEXT("+") && Part != TEXT(".");
		};
		int32 Exponent = INDEX_NONE;
		if (!Text.FindChar(TEXT('e'), Exponent) && !Text.FindChar(TEXT('E'), Exponent))
		{
			return IsMantissa(Text);
		}
		FString Power = Text.Mid(Exponent + 1);
		if (Power.StartsWith(TEXT("-")) || Power.StartsWith(TEXT("+")))
		{
			Power.RightChopInline(1);
		}
		bool bDigits = !Power.IsEmpty();
		for (int32 Index = 0; Index < Power.Len(); ++Index)
		{
			bDigits = bDigits && FChar::IsDigit(Power[Index]);
		}
		return bDigits && IsMantissa(Text.Left(Exponent));
	}

	// A number argument: a JSON number or numeric text; the default when absent. False with the
	// message for anything else.
	bool ReadCityNumber(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, double& InOutValue, FString& OutError)
	{
		const TSharedPtr<FJsonValue> Value = Arguments.IsValid() ? Arguments->TryGetField(Key) : nullptr;
		if (!Value.IsValid() || Value->Type == EJson::Null)
		{
			return true;
		}
		if (Value->Type == EJson::Number)
		{
			InOutValue = Value->AsNumber();
			return true;
		}
		const FString Text = Value->Type == EJson::String ? Value->AsString().TrimStartAndEnd() : FString();
		if (IsCityNumberText(Text))
		{
			InOutValue = FCString::Atod(*Text);
			return true;
		}
		OutError = FString::Printf(TEXT("%s must be a number."), Key);
		return false;
	}

	// A count through the shared integer reader; a value it cannot read is refused rather than
	// replaced by the default.
	bool ReadCityCount(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, int32 Max, int32& InOutValue, FString& OutError)
	{
		const int32 Low = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, Key, 0);
		if (Low != ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, Key, 1))
		{
			const TSharedPtr<FJsonValue> Value = Arguments.IsValid() ? Arguments->TryGetField(Key) : nullptr;
			if (!Value.IsValid() || Value->Type == EJson::Null)
			{
				return true;
			}
			OutError = FString::Printf(TEXT("%s must be a whole number from 1 to %d."), Key, Max);
			return false;
		}
		InOutValue = Low;
		return true;
	}

	struct FCityCommonArguments
	{
		FString PackagePath;
		FString AssetName;
		bool bCompile = true;
	};

	FCityCommonArguments ReadCityCommon(const TSharedPtr<FJsonObject>& Arguments)
	{
		FCityCommonArguments Common;
		Common.PackagePath = ReadPrimitiveActorString(Arguments, TEXT("PackagePath"));
		Common.AssetName = ReadPrimitiveActorString(Arguments, TEXT("AssetName"));
		Common.bCompile = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("Compile"), true);
		return Common;
	}

	// The answer of a city tool: the builder's answer, the footprint and the parameters used.
	TSharedPtr<FJsonObject> AnswerCityTool(const FCityActorBuild& City, const TSharedPtr<FJsonObject>& Parameters)
	{
		if (!City.Build.bSuccess && !City.Build.bAssetCreated)
		{
			return FailPrimitiveActorTool(City.Build.Error);
		}
		TSharedPtr<FJsonObject> Result = MakeBuildJson(City.Build);
		Result->SetObjectField(TEXT("footprint"), MakeFootprintJson(City.Footprint));
		Result->SetObjectField(TEXT("parameters"), Parameters);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, !City.Build.bSuccess);
	}

	TSharedPtr<FJsonObject> MakeLaneParameters(int32 LaneCount, double LaneWidth, double SidewalkWidth)
	{
		TSharedPtr<FJsonObject> Parameters = MakeShared<FJsonObject>();
		Parameters->SetNumberField(TEXT("lane_count"), LaneCount);
		Parameters->SetNumberField(TEXT("lane_width"), LaneWidth);
		Parameters->SetNumberField(TEXT("sidewalk_width"), SidewalkWidth);
		Parameters->SetNumberField(TEXT("road_width"), LaneCount * LaneWidth);
		return Parameters;
	}
}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePrimitiveActorTools::HandleCreatePrimitiveActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("blueprint_create_primitive_actor"));
	}
	const FCreatePrimitiveActorParams Params = FCreatePrimitiveActorParams::Read(*Context.EditorPort, Arguments);
	if (!Params.Error.IsEmpty())
	{
		return FailPrimitiveActorTool(Params.Error);
	}
	const FPrimitiveActorBuild Build = BuildPrimitiveActor(*Context.EditorPort, Params.Spec);
	if (!Build.bSuccess && !Build.bAssetCreated)
	{
		return FailPrimitiveActorTool(Build.Error);
	}
	TSharedPtr<FJsonObject> Result = MakeBuildJson(Build);
	Result->SetStringField(TEXT("preset"), Params.Preset);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, !Build.bSuccess);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePrimitiveActorTools::HandleCreateRoadActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("blueprint_create_road_actor"));
	}
	const FCityCommonArguments Common = ReadCityCommon(Arguments);
	FRoadParams Params;
	Params.PackagePath = Common.PackagePath;
	Params.AssetName = Common.AssetName;
	Params.bCompile = Common.bCompile;
	Params.SurfaceMaterialPath = ReadPrimitiveActorString(Arguments, TEXT("SurfaceMaterialPath"));
	Params.MarkingMaterialPath = ReadPrimitiveActorString(Arguments, TEXT("MarkingMaterialPath"));
	Params.SidewalkMaterialPath = ReadPrimitiveActorString(Arguments, TEXT("SidewalkMaterialPath"));
	FString Error;
	if (!ReadCityNumber(Arguments, TEXT("Length"), Params.Length, Error) || !ReadCityCount(Arguments, TEXT("LaneCount"), MaxLaneCount, Params.LaneCount, Error)
		|| !ReadCityNumber(Arguments, TEXT("LaneWidth"), Params.LaneWidth, Error) || !ReadCityNumber(Arguments, TEXT("SidewalkWidth"), Params.SidewalkWidth, Error))
	{
		return FailPrimitiveActorTool(Error);
	}
	TSharedPtr<FJsonObject> Parameters = MakeLaneParameters(Params.LaneCount, Params.LaneWidth, Params.SidewalkWidth);
	Parameters->SetNumberField(TEXT("length"), Params.Length);
	return AnswerCityTool(CreateRoadActor(*Context.EditorPort, Params), Parameters);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePrimitiveActorTools::HandleCreateIntersectionActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("blueprint_create_intersection_actor"));
	}
	const FCityCommonArguments Common = ReadCityCommon(Arguments);
	FIntersectionParams Params;
	Params.PackagePath = Common.PackagePath;
	Params.AssetName = Common.AssetName;
	Params.bCompile = Common.bCompile;
	Params.bCrossings = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("Crossings"), true);
	Params.SurfaceMaterialPath = ReadPrimitiveActorString(Arguments, TEXT("SurfaceMaterialPath"));
	Params.MarkingMaterialPath = ReadPrimitiveActorString(Arguments, TEXT("MarkingMaterialPath"));
	Params.SidewalkMaterialPath = ReadPrimitiveActorString(Arguments, TEXT("SidewalkMaterialPath"));
	FString Error;
	if (!ReadCityCount(Arguments, TEXT("LaneCount"), MaxLaneCount, Params.LaneCount, Error) || !ReadCityNumber(Arguments, TEXT("LaneWidth"), Params.LaneWidth, Error)
		|| !ReadCityNumber(Arguments, TEXT("SidewalkWidth"), Params.SidewalkWidth, Error))
	{
		return FailPrimitiveActorTool(Error);
	}
	TSharedPtr<FJsonObject> Parameters = MakeLaneParameters(Params.LaneCount, Params.LaneWidth, Params.SidewalkWidth);
	Parameters->SetBoolField(TEXT("crossings"), Params.bCrossings && Params.SidewalkWidth > 0.0);
	return AnswerCityTool(CreateIntersectionActor(*Context.EditorPort, Params), Parameters);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePrimitiveActorTools::HandleCreateSkyscraperActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("blueprint_create_skyscraper_actor"));
	}
	const FCityCommonArguments Common = ReadCityCommon(Arguments);
	FSkyscraperParams Params;
	Params.PackagePath = Common.PackagePath;
	Params.AssetName = Common.AssetName;
	Params.bCompile = Common.bCompile;
	Params.bWindowBands = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("WindowBands"), true);
	Params.bRoof = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("Roof"), true);
	Params.FacadeMaterialPath = ReadPrimitiveActorString(Arguments, TEXT("FacadeMaterialPath"));
	Params.WindowMaterialPath = ReadPrimitiveActorString(Arguments, TEXT("WindowMaterialPath"));
	Params.RoofMaterialPath = ReadPrimitiveActorString(Arguments, TEXT("RoofMaterialPath"));
	FString Error;
	if (!ReadCityCount(Arguments, TEXT("Floors"), MaxFloors, Params.Floors, Error) || !ReadCityNumber(Arguments, TEXT("FloorHeight"), Params.FloorHeight, Error)
		|| !ReadCityNumber(Arguments, TEXT("Width"), Params.Width, Error) || !ReadCityNumber(Arguments, TEXT("Depth"), Params.Depth, Error))
	{
		return FailPrimitiveActorTool(Error);
	}
	TSharedPtr<FJsonObject> Parameters = MakeShared<FJsonObject>();
	Parameters->SetNumberField(TEXT("floors"), Params.Floors);
	Parameters->SetNumberField(TEXT("floor_height"), Params.FloorHeight);
	Parameters->SetNumberField(TEXT("width"), Params.Width);
	Parameters->SetNumberField(TEXT("depth"), Params.Depth);
	Parameters->SetBoolField(TEXT("window_bands"), Params.bWindowBands);
	Parameters->SetBoolField(TEXT("roof"), Params.bRoof);
	return AnswerCityTool(CreateSkyscraperActor(*Context.EditorPort, Params), Parameters);
}
