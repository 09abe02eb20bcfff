#include "Blueprint/ZorvekMCPBridgePrimitiveActors.h"

#include "Blueprint/ZorvekMCPBridgeBlueprintMembers.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
// FMath::Sin and FMath::Cos: not in the reference notes; check against the engine (Core's
// Math/UnrealMathUtility.h).
#include "Math/UnrealMathUtility.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeBlueprintNodeTools.h"
#include "World/ZorvekMCPBridgeActorReadback.h"
#include "World/ZorvekMCPBridgeWorldTransformArguments.h"

const TCHAR* const ZorvekMCPBridgePrimitiveActors::RootComponentName = TEXT("Root");
const TCHAR* const ZorvekMCPBridgePrimitiveActors::BasicShapeMaterialPath = TEXT("/Engine/BasicShapes/BasicShapeMaterial.BasicShapeMaterial");

// Helpers inside the domain namespace, so a unity build does not share them with other files.
namespace ZorvekMCPBridgePrimitiveActors
{
namespace
{
	const TCHAR* const PrimitiveActorActorClassPath = TEXT("/Script/Engine.Actor");
	const TCHAR* const PrimitiveActorSceneComponentClassPath = TEXT("/Script/Engine.SceneComponent");
	const TCHAR* const PrimitiveActorStaticMeshComponentClassPath = TEXT("/Script/Engine.StaticMeshComponent");
	const TCHAR* const PrimitiveActorMaterialInterfaceClassPath = TEXT("/Script/Engine.MaterialInterface");
	constexpr int32 PrimitiveActorMaxNameLength = 64;
	constexpr double PrimitiveActorDegreesToRadians = 3.14159265358979323846 / 180.0;

	// Names the new Blueprint already uses or the engine would rename a component away from.
	const TCHAR* const PrimitiveActorReservedNames[] = { TEXT("Root"), TEXT("DefaultSceneRoot"), TEXT("EventGraph"), TEXT("UserConstructionScript"), TEXT("None"), TEXT("Self") };

	// The words that pick the DummyTree's materials among the project's own.
	const TCHAR* const PrimitiveActorTrunkWords[] = { TEXT("Bark"), TEXT("Trunk"), TEXT("Wood"), TEXT("Brown") };
	const TCHAR* const PrimitiveActorCrownWords[] = { TEXT("Leaf"), TEXT("Leaves"), TEXT("Foliage"), TEXT("Canopy"), TEXT("Green") };

	struct FPrimitiveActorQuat
	{
		double X = 0.0;
		double Y = 0.0;
		double Z = 0.0;
		double W = 1.0;

		// FRotator::Quaternion: roll about X, then pitch about Y, then yaw about Z.
		static FPrimitiveActorQuat FromRotator(const FZorvekMCPBridgeRotator& Rotator)
		{
			const double HalfPitch = Rotator.Pitch * PrimitiveActorDegreesToRadians * 0.5;
			const double HalfYaw = Rotator.Yaw * PrimitiveActorDegreesToRadians * 0.5;
			const double HalfRoll = Rotator.Roll * PrimitiveActorDegreesToRadians * 0.5;
			const double SP = FMath::Sin(HalfPitch);
			const double CP = FMath::Cos(HalfPitch);
			const double SY = FMath::Sin(HalfYaw);
			const double CY = FMath::Cos(HalfYaw);
			const double SR = FMath::Sin(HalfRoll);
			const double CR = FMath::Cos(HalfRoll);
			FPrimitiveActorQuat Result;
			Result.X = CR * SP * SY - SR * CP * CY;
			Result.Y = -CR * SP * CY - SR * CP * SY;
			Result.Z = CR * CP * SY - SR * SP * CY;
			Result.W = CR * CP * CY + SR * SP * SY;
			return Result;
		}

		// This * Other: Other's rotation first, then this one.
		FPrimitiveActorQuat operator*(const FPrimitiveActorQuat& Other) const
		{
			FPrimitiveActorQuat Result;
			Result.X = W * Other.X + X * Other.W + Y * Other.Z - Z * Other.Y;
			Result.Y = W * Other.Y - X * Other.Z + Y * Other.W + Z * Other.X;
			Result.Z = W * Other.Z + X * Other.Y - Y * Other.X + Z * Other.W;
			Result.W = W * Other.W - X * Other.X - Y * Other.Y - Z * Other.Z;
			return Result;
		}

		FZorvekMCPBridgeVector Rotate(const FZorvekMCPBridgeVector& V) const
		{
			// V + 2W(Q x V) + 2 Q x (Q x V)
			const FZorvekMCPBridgeVector T = { 2.0 * (Y * V.Z - Z * V.Y), 2.0 * (Z * V.X - X * V.Z), 2.0 * (X * V.Y - Y * V.X) };
			return { V.X + W * T.X + (Y * T.Z - Z * T.Y), V.Y + W * T.Y + (Z * T.X - X * T.Z), V.Z + W * T.Z + (X * T.Y - Y * T.X) };
		}
	};

	// A part's transform relative to the actor: FTransform's product of relative and parent.
	struct FPrimitiveActorWorldTransform
	{
		FZorvekMCPBridgeVector Location;
		FPrimitiveActorQuat Rotation;
		FZorvekMCPBridgeVector Scale = { 1.0, 1.0, 1.0 };
	};

	FPrimitiveActorWorldTransform ComposePrimitiveActorTransform(const FZorvekMCPBridgeTransform& Relative, const FPrimitiveActorWorldTransform& Parent)
	{
		FPrimitiveActorWorldTransform Result;
		Result.Scale = { Relative.Scale.X * Parent.Scale.X, Relative.Scale.Y * Parent.Scale.Y, Relative.Scale.Z * Parent.Scale.Z };
		Result.Rotation = Parent.Rotation * FPrimitiveActorQuat::FromRotator(Relative.Rotation);
		const FZorvekMCPBridgeVector Scaled = { Relative.Location.X * Parent.Scale.X, Relative.Location.Y * Parent.Scale.Y, Relative.Location.Z * Parent.Scale.Z };
		const FZorvekMCPBridgeVector Rotated = Parent.Rotation.Rotate(Scaled);
		Result.Location = { Rotated.X + Parent.Location.X, Rotated.Y + Parent.Location.Y, Rotated.Z + Parent.Location.Z };
		return Result;
	}

	void AddPrimitiveActorPoint(FZorvekMCPBridgeBox& Box, const FZorvekMCPBridgeVector& Point)
	{
		if (!Box.bIsValid)
		{
			Box.Min = Point;
			Box.Max = Point;
			Box.bIsValid = true;
			return;
		}
		Box.Min = { FMath::Min(Box.Min.X, Point.X), FMath::Min(Box.Min.Y, Point.Y), FMath::Min(Box.Min.Z, Point.Z) };
		Box.Max = { FMath::Max(Box.Max.X, Point.X), FMath::Max(Box.Max.Y, Point.Y), FMath::Max(Box.Max.Z, Point.Z) };
	}

	int32 FindPrimitiveActorPart(const TArray<FPrimitivePart>& Parts, const FString& Name)
	{
		for (int32 Index = 0; Index < Parts.Num(); ++Index)
		{
			if (Parts[Index].Name.Equals(Name, ESearchCase::IgnoreCase))
			{
				return Index;
			}
		}
		return INDEX_NONE;
	}

	bool IsPrimitiveActorRootName(const FString& Name)
	{
		return Name.IsEmpty() || Name.Equals(RootComponentName, ESearchCase::IgnoreCase);
	}

	// Letters, digits and underscores, starting with a letter or underscore, as a component
	// variable that is also a Blueprint property name.
	bool IsPrimitiveActorNameValid(const FString& Name)
	{
		if (Name.IsEmpty() || Name.Len() > PrimitiveActorMaxNameLength || FChar::IsDigit(Name[0]))
		{
			return false;
		}
		for (int32 Index = 0; Index < Name.Len(); ++Index)
		{
			const TCHAR Character = Name[Index];
			if (!FChar::IsAlpha(Character) && !FChar::IsDigit(Character) && Character != TEXT('_'))
			{
				return false;
			}
		}
		return true;
	}

	// A number of a part's transform: finite and within the world tools' range.
	FString CheckPrimitiveActorNumber(const FString& PartName, const TCHAR* Key, double Value)
	{
		if (!FMath::IsFinite(Value))
		{
			return FString::Printf(TEXT("Part '%s': %s must be a finite number."), *PartName, Key);
		}
		if (FMath::Abs(Value) > ZorvekMCPBridgeWorldTransformArguments::MaxMagnitude)
		{
			return FString::Printf(TEXT("Part '%s': %s is out of range (at most 10000000 in magnitude)."), *PartName, Key);
		}
		return FString();
	}

	FString CheckPrimitiveActorTransform(const FPrimitivePart& Part)
	{
		const FZorvekMCPBridgeTransform& T = Part.Transform;
		const struct
		{
			const TCHAR* Key;
			double Value;
		} Numbers[] = {
			{TEXT("LocationX"), T.Location.X}, {TEXT("LocationY"), T.Location.Y}, {TEXT("LocationZ"), T.Location.Z},
			{TEXT("RotationPitch"), T.Rotation.Pitch}, {TEXT("RotationYaw"), T.Rotation.Yaw}, {TEXT("RotationRoll"), T.Rotation.Roll},
			{TEXT("ScaleX"), T.Scale.X}, {TEXT("ScaleY"), T.Scale.Y}, {TEXT("ScaleZ"), T.Scale.Z},
		};
		for (const auto& Number : Numbers)
		{
			FString Refusal = CheckPrimitiveActorNumber(Part.Name, Number.Key, Number.Value);
			if (!Refusal.IsEmpty())
			{
				return Refusal;
			}
		}
		// A zero scale makes a part that cannot be seen and a degenerate component transform.
		for (int32 Index = 6; Index < 9; ++Index)
		{
			if (Numbers[Index].Value == 0.0)
			{
				return FString::Printf(TEXT("Part '%s': %s must not be 0."), *Part.Name, Numbers[Index].Key);
			}
		}
		return FString();
	}

	// The message of a text tool result.
	FString GetPrimitiveActorResultText(const TSharedPtr<FJsonObject>& Result)
	{
		const TArray<TSharedPtr<FJsonValue>>* Content = nullptr;
		if (Result.IsValid() && Result->TryGetArrayField(TEXT("content"), Content) && Content->Num() > 0)
		{
			return (*Content)[0]->AsObject()->GetStringField(TEXT("text"));
		}
		return FString();
	}

	bool IsPrimitiveActorResultError(const TSharedPtr<FJsonObject>& Result)
	{
		return !Result.IsValid() || Result->GetBoolField(TEXT("isError"));
	}

	FString FormatPrimitiveActorVector(const FZorvekMCPBridgeVector& Vector)
	{
		return FString::Printf(TEXT("(X=%f,Y=%f,Z=%f)"), Vector.X, Vector.Y, Vector.Z);
	}

	// The template's relative transform as the component's properties take it; only what differs
	// from a fresh component's, so the template keeps its defaults elsewhere.
	TSharedPtr<FJsonObject> MakePrimitiveActorTransformProperties(const FZorvekMCPBridgeTransform& Transform)
	{
		TSharedPtr<FJsonObject> Properties = MakeShared<FJsonObject>();
		const FZorvekMCPBridgeVector& L = Transform.Location;
		const FZorvekMCPBridgeRotator& R = Transform.Rotation;
		const FZorvekMCPBridgeVector& S = Transform.Scale;
		if (L.X != 0.0 || L.Y != 0.0 || L.Z != 0.0)
		{
			Properties->SetStringField(TEXT("RelativeLocation"), FormatPrimitiveActorVector(L));
		}
		if (R.Pitch != 0.0 || R.Yaw != 0.0 || R.Roll != 0.0)
		{
			Properties->SetStringField(TEXT("RelativeRotation"), FString::Printf(TEXT("(Pitch=%f,Yaw=%f,Roll=%f)"), R.Pitch, R.Yaw, R.Roll));
		}
		if (S.X != 1.0 || S.Y != 1.0 || S.Z != 1.0)
		{
			Properties->SetStringField(TEXT("RelativeScale3D"), FormatPrimitiveActorVector(S));
		}
		return Properties;
	}

	TSharedPtr<FJsonObject> AddPrimitiveActorStep(FPrimitiveActorBuild& Build, const TCHAR* Step, bool bSuccess, const FString& Detail)
	{
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("step"), Step);
		Entry->SetBoolField(TEXT("success"), bSuccess);
		Entry->SetStringField(TEXT("detail"), Detail);
		Build.Steps.Add(MakeShared<FJsonValueObject>(Entry));
		return Entry;
	}

	void FailPrimitiveActorBuild(FPrimitiveActorBuild& Build, const TCHAR* Step, const FString& Error)
	{
		AddPrimitiveActorStep(Build, Step, false, Error);
		Build.bSuccess = false;
		Build.FailedStep = Step;
		Build.Error = Error;
	}

	// The first material under /Game whose asset name holds one of the words, loaded; empty when
	// the project has none.
	template <int32 WordCount>
	FString FindPrimitiveActorProjectMaterial(IZorvekMCPBridgeEditorPort& Port, const TCHAR* const (&Words)[WordCount])
	{
		FZorvekMCPBridgeAssetFilter Filter;
		Filter.PackagePaths.Add(TEXT("/Game"));
		Filter.bRecursivePaths = true;
		Filter.ClassPaths.Add(PrimitiveActorMaterialInterfaceClassPath);
		Filter.bRecursiveClasses = true;
		TArray<FString> Candidates;
		Port.GetAssetRegistry().EnumerateAssets(Filter, [&Candidates, &Words](const FZorvekMCPBridgeAssetData& Asset)
		{
			for (const TCHAR* Word : Words)
			{
				if (Asset.AssetName.Contains(Word, ESearchCase::IgnoreCase))
				{
					Candidates.Add(Asset.ObjectPath);
					break;
				}
			}
			return true;
		});
		for (const FString& Candidate : Candidates)
		{
			const FString Loaded = ZorvekMCPBridgeBlueprintMembers::ResolveMaterialPath(Port, Candidate);
			if (!Loaded.IsEmpty())
			{
				return Loaded;
			}
		}
		return FString();
	}
}
}

bool ZorvekMCPBridgePrimitiveActors::ParseShape(const FString& Word, EPrimitiveShape& OutShape)
{
	const EPrimitiveShape Shapes[] = { EPrimitiveShape::Cube, EPrimitiveShape::Sphere, EPrimitiveShape::Cylinder, EPrimitiveShape::Cone, EPrimitiveShape::Plane };
	for (const EPrimitiveShape Shape : Shapes)
	{
		if (Word.TrimStartAndEnd().Equals(GetShapeName(Shape), ESearchCase::IgnoreCase))
		{
			OutShape = Shape;
			return true;
		}
	}
	return false;
}

const TCHAR* ZorvekMCPBridgePrimitiveActors::GetShapeName(EPrimitiveShape Shape)
{
	switch (Shape)
	{
	case EPrimitiveShape::Sphere:
		return TEXT("Sphere");
	case EPrimitiveShape::Cylinder:
		return TEXT("Cylinder");
	case EPrimitiveShape::Cone:
		return TEXT("Cone");
	case EPrimitiveShape::Plane:
		return TEXT("Plane");
	default:
		return TEXT("Cube");
	}
}

FZorvekMCPBridgeVector ZorvekMCPBridgePrimitiveActors::GetShapeExtent(EPrimitiveShape Shape)
{
	return Shape == EPrimitiveShape::Plane ? FZorvekMCPBridgeVector{ 50.0, 50.0, 0.0 } : FZorvekMCPBridgeVector{ 50.0, 50.0, 50.0 };
}

bool ZorvekMCPBridgePrimitiveActors::ValidateSpec(IZorvekMCPBridgeEditorPort& Port, const FPrimitiveActorSpec& Spec, TArray<FBuiltPart>& OutParts, FString& OutError)
{
	OutParts.Reset();
	// The asset first, with blueprint_create's own checks and messages.
	ZorvekMCPBridgeBlueprintMembers::FCreateBlueprintParams Create;
	Create.PackagePath = Spec.PackagePath;
	Create.AssetName = Spec.AssetName;
	Create.ParentClassPath = Spec.ParentClassPath;
	const FString RequiredMessage = FString::Printf(TEXT("%s requires PackagePath and AssetName."), *Spec.ToolName);
	FString PackageName;
	FString ParentClassPath;
	if (const TSharedPtr<FJsonObject> Refusal = ZorvekMCPBridgeBlueprintMembers::CheckCreateBlueprint(Port, Create, *RequiredMessage, PackageName, ParentClassPath))
	{
		OutError = GetPrimitiveActorResultText(Refusal);
		return false;
	}
	if (!Port.GetObjects().IsChildOf(ParentClassPath, PrimitiveActorActorClassPath))
	{
		OutError = FString::Printf(TEXT("Parent class is not an Actor class: %s"), *ParentClassPath);
		return false;
	}

	if (Spec.Parts.IsEmpty())
	{
		OutError = FString::Printf(TEXT("%s needs at least one part."), *Spec.ToolName);
		return false;
	}
	if (Spec.Parts.Num() > MaxParts)
	{
		OutError = FString::Printf(TEXT("Too many parts: %d (at most %d)."), Spec.Parts.Num(), MaxParts);
		return false;
	}

	// Names, numbers and materials, part by part.
	TArray<FBuiltPart> Parts;
	for (int32 Index = 0; Index < Spec.Parts.Num(); ++Index)
	{
		const FPrimitivePart& Part = Spec.Parts[Index];
		if (Part.Name.IsEmpty())
		{
			OutError = FString::Printf(TEXT("Parts[%d] requires Name."), Index);
			return false;
		}
		if (!IsPrimitiveActorNameValid(Part.Name))
		{
			OutError = FString::Printf(TEXT("Part name '%s' must start with a letter or underscore and hold only letters, digits and underscores (at most %d characters)."),
				*Part.Name, PrimitiveActorMaxNameLength);
			return false;
		}
		for (const TCHAR* Reserved : PrimitiveActorReservedNames)
		{
			if (Part.Name.Equals(Reserved, ESearchCase::IgnoreCase))
			{
				OutError = FString::Printf(TEXT("Part name '%s' is taken by the actor's root component or graphs."), *Part.Name);
				return false;
			}
		}
		// Component variable names ignore case, as FName does.
		if (FindPrimitiveActorPart(Spec.Parts, Part.Name) != Index)
		{
			OutError = FString::Printf(TEXT("Duplicate part name: %s"), *Part.Name);
			return false;
		}
		OutError = CheckPrimitiveActorTransform(Part);
		if (!OutError.IsEmpty())
		{
			return false;
		}
		FBuiltPart Built;
		Built.Part = Part;
		const FString MeshRequest = ZorvekMCPBridgeBlueprintMembers::GetPrimitiveShapeMeshPath(GetShapeName(Part.Shape));
		Built.StaticMeshPath = ZorvekMCPBridgeBlueprintMembers::ResolveStaticMeshPath(Port, MeshRequest);
		if (Built.StaticMeshPath.IsEmpty())
		{
			OutError = FString::Printf(TEXT("Could not resolve StaticMesh asset: %s"), *MeshRequest);
			return false;
		}
		if (Part.MaterialPath.IsEmpty())
		{
			Built.MaterialPath = BasicShapeMaterialPath;
			Built.bMeshMaterial = true;
		}
		else
		{
			Built.MaterialPath = ZorvekMCPBridgeBlueprintMembers::ResolveMaterialPath(Port, Part.MaterialPath);
			Built.bMeshMaterial = false;
			if (Built.MaterialPath.IsEmpty())
			{
				OutError = FString::Printf(TEXT("Part '%s': Could not resolve Material asset: %s"), *Part.Name, *Part.MaterialPath);
				return false;
			}
		}
		Parts.Add(MoveTemp(Built));
	}

	// Parents: each names the root or another part, and following them always reaches the root.
	for (const FBuiltPart& Built : Parts)
	{
		const FPrimitivePart& Part = Built.Part;
		if (!IsPrimitiveActorRootName(Part.ParentName) && FindPrimitiveActorPart(Spec.Parts, Part.ParentName) == INDEX_NONE)
		{
			OutError = FString::Printf(TEXT("Part '%s': parent part does not exist: %s"), *Part.Name, *Part.ParentName);
			return false;
		}
		FString Parent = Part.ParentName;
		for (int32 Steps = 0; !IsPrimitiveActorRootName(Parent); ++Steps)
		{
			if (Steps >= Spec.Parts.Num())
			{
				OutError = FString::Printf(TEXT("Part '%s': its parents form a cycle."), *Part.Name);
				return false;
			}
			Parent = Spec.Parts[FindPrimitiveActorPart(Spec.Parts, Parent)].ParentName;
		}
	}

	// Build order: a part is added once its parent is there, otherwise in the given order.
	TArray<uint8> Placed;
	for (int32 Index = 0; Index < Parts.Num(); ++Index)
	{
		Placed.Add(0);
	}
	while (OutParts.Num() < Parts.Num())
	{
		for (int32 Index = 0; Index < Parts.Num(); ++Index)
		{
			const FString& ParentName = Parts[Index].Part.ParentName;
			const int32 ParentIndex = IsPrimitiveActorRootName(ParentName) ? INDEX_NONE : FindPrimitiveActorPart(Spec.Parts, ParentName);
			if (Placed[Index] == 0 && (ParentIndex == INDEX_NONE || Placed[ParentIndex] != 0))
			{
				Placed[Index] = 1;
				OutParts.Add(Parts[Index]);
				break;
			}
		}
	}
	return true;
}

FZorvekMCPBridgeBox ZorvekMCPBridgePrimitiveActors::ComputeLocalBounds(const TArray<FPrimitivePart>& Parts)
{
	FZorvekMCPBridgeBox Bounds;
	for (const FPrimitivePart& Part : Parts)
	{
		// The chain from the part up to the root, then composed from the root down.
		TArray<const FPrimitivePart*> Chain;
		for (const FPrimitivePart* Current = &Part; Current && Chain.Num() <= Parts.Num();)
		{
			Chain.Add(Current);
			const int32 ParentIndex = IsPrimitiveActorRootName(Current->ParentName) ? INDEX_NONE : FindPrimitiveActorPart(Parts, Current->ParentName);
			Current = ParentIndex == INDEX_NONE ? nullptr : &Parts[ParentIndex];
		}
		FPrimitiveActorWorldTransform World;
		for (int32 Index = Chain.Num() - 1; Index >= 0; --Index)
		{
			World = ComposePrimitiveActorTransform(Chain[Index]->Transform, World);
		}
		const FZorvekMCPBridgeVector Extent = GetShapeExtent(Part.Shape);
		for (int32 Corner = 0; Corner < 8; ++Corner)
		{
			const FZorvekMCPBridgeVector Local = {
				((Corner & 1) ? Extent.X : -Extent.X) * World.Scale.X,
				((Corner & 2) ? Extent.Y : -Extent.Y) * World.Scale.Y,
				((Corner & 4) ? Extent.Z : -Extent.Z) * World.Scale.Z };
			const FZorvekMCPBridgeVector Rotated = World.Rotation.Rotate(Local);
			AddPrimitiveActorPoint(Bounds, { Rotated.X + World.Location.X, Rotated.Y + World.Location.Y, Rotated.Z + World.Location.Z });
		}
	}
	return Bounds;
}

ZorvekMCPBridgePrimitiveActors::FPrimitiveActorBuild ZorvekMCPBridgePrimitiveActors::BuildPrimitiveActor(IZorvekMCPBridgeEditorPort& Port, const FPrimitiveActorSpec& Spec)
{
	FPrimitiveActorBuild Build;
	TArray<FBuiltPart> Parts;
	FString Error;
	if (!ValidateSpec(Port, Spec, Parts, Error))
	{
		FailPrimitiveActorBuild(Build, TEXT("validate"), Error);
		return Build;
	}
	AddPrimitiveActorStep(Build, TEXT("validate"), true, FString::Printf(TEXT("%d parts checked."), Parts.Num()));
	TArray<FPrimitivePart> PlainParts;
	for (const FBuiltPart& Built : Parts)
	{
		PlainParts.Add(Built.Part);
	}
	Build.LocalBounds = ComputeLocalBounds(PlainParts);

	ZorvekMCPBridgeBlueprintMembers::FCreateBlueprintParams Create;
	Create.PackagePath = Spec.PackagePath;
	Create.AssetName = Spec.AssetName;
	Create.ParentClassPath = Spec.ParentClassPath;
	const TSharedPtr<FJsonObject> Created = ZorvekMCPBridgeBlueprintMembers::CreateBlueprint(Port, Create);
	if (IsPrimitiveActorResultError(Created))
	{
		FailPrimitiveActorBuild(Build, TEXT("create_blueprint"), GetPrimitiveActorResultText(Created));
		return Build;
	}
	const TSharedPtr<FJsonObject> CreatedPayload = Created->GetObjectField(TEXT("structuredContent"));
	Build.bAssetCreated = true;
	Build.AssetPath = CreatedPayload->GetStringField(TEXT("asset_path"));
	Build.ObjectPath = CreatedPayload->GetStringField(TEXT("object_path"));
	Build.ParentClassPath = CreatedPayload->GetStringField(TEXT("parent_class"));
	AddPrimitiveActorStep(Build, TEXT("create_blueprint"), true, FString::Printf(TEXT("Created %s from %s."), *Build.ObjectPath, *Build.ParentClassPath));

	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	const FZorvekMCPBridgeObjectHandle Blueprint = Port.GetObjects().LoadObject(Build.ObjectPath);
	// A parent class's own members may take a name; better an empty Blueprint than renamed parts.
	for (const FBuiltPart& Built : Parts)
	{
		if (!Blueprints.IsGraphNameUnique(Blueprint, Built.Part.Name))
		{
			FailPrimitiveActorBuild(Build, TEXT("check_names"), FString::Printf(TEXT("Part name '%s' is already used by a member of %s."), *Built.Part.Name, *Build.ParentClassPath));
			return Build;
		}
	}

	ZorvekMCPBridgeBlueprintMembers::FAddComponentParams Root;
	Root.BlueprintNameOrPath = Build.ObjectPath;
	Root.ComponentName = RootComponentName;
	Root.ComponentClassPath = PrimitiveActorSceneComponentClassPath;
	const TSharedPtr<FJsonObject> RootAdded = ZorvekMCPBridgeBlueprintMembers::AddComponent(Port, Root);
	if (IsPrimitiveActorResultError(RootAdded))
	{
		FailPrimitiveActorBuild(Build, TEXT("add_root"), GetPrimitiveActorResultText(RootAdded));
		return Build;
	}
	AddPrimitiveActorStep(Build, TEXT("add_root"), true, FString::Printf(TEXT("Added the scene root '%s' in place of DefaultSceneRoot."), RootComponentName));

	for (const FBuiltPart& Built : Parts)
	{
		ZorvekMCPBridgeBlueprintMembers::FAddComponentParams Component;
		Component.BlueprintNameOrPath = Build.ObjectPath;
		Component.ComponentName = Built.Part.Name;
		Component.ComponentClassPath = PrimitiveActorStaticMeshComponentClassPath;
		Component.ParentComponentName = IsPrimitiveActorRootName(Built.Part.ParentName) ? FString(RootComponentName) : Built.Part.ParentName;
		Component.PrimitiveShape = GetShapeName(Built.Part.Shape);
		Component.MaterialPath = Built.bMeshMaterial ? FString() : Built.MaterialPath;
		Component.Properties = MakePrimitiveActorTransformProperties(Built.Part.Transform);
		const TSharedPtr<FJsonObject> Added = ZorvekMCPBridgeBlueprintMembers::AddComponent(Port, Component);
		if (IsPrimitiveActorResultError(Added))
		{
			FailPrimitiveActorBuild(Build, TEXT("add_part"), FString::Printf(TEXT("Part '%s': %s"), *Built.Part.Name, *GetPrimitiveActorResultText(Added)));
			return Build;
		}
		Build.Parts.Add(Built);
		AddPrimitiveActorStep(Build, TEXT("add_part"), true, FString::Printf(TEXT("Added '%s' (%s) under '%s'."), *Built.Part.Name, GetShapeName(Built.Part.Shape),
			*Component.ParentComponentName))->SetStringField(TEXT("part"), Built.Part.Name);
	}

	if (Spec.bCompile)
	{
		const FZorvekMCPBridgeCompileResult Compiled = Blueprints.Compile(Blueprint, ZorvekMCPBridgeBlueprintNodeTools::CompileFlags);
		FZorvekMCPBridgeBlueprintSnapshot After;
		Blueprints.ReadBlueprint(Blueprint, After);
		Build.bCompiled = true;
		Build.CompileStatus = ZorvekMCPBridgeBlueprintNodeTools::GetStatusWord(After.Status);
		Build.CompileErrorCount = Compiled.NumErrors;
		Build.CompileWarningCount = Compiled.NumWarnings;
		for (const FZorvekMCPBridgeCompileMessage& Message : Compiled.Messages)
		{
			Build.CompileMessages.Add(FString::Printf(TEXT("%s: %s"), *Message.SeverityText, *Message.Text));
		}
		const bool bCompiledClean = Compiled.NumErrors == 0 && After.Status != EZorvekMCPBridgeBlueprintStatus::Error;
		if (!bCompiledClean)
		{
			FailPrimitiveActorBuild(Build, TEXT("compile"), FString::Printf(TEXT("The Blueprint compiled with %d errors (status %s)."), Compiled.NumErrors, *Build.CompileStatus));
			return Build;
		}
		AddPrimitiveActorStep(Build, TEXT("compile"), true, FString::Printf(TEXT("Compiled: %s."), *Build.CompileStatus));
	}
	Build.bSuccess = true;
	return Build;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePrimitiveActors::MakeBuildJson(const FPrimitiveActorBuild& Build)
{
	using namespace ZorvekMCPBridgeActorReadback;
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetBoolField(TEXT("success"), Build.bSuccess);
	Result->SetStringField(TEXT("asset_path"), Build.AssetPath);
	Result->SetStringField(TEXT("object_path"), Build.ObjectPath);
	Result->SetStringField(TEXT("parent_class"), Build.ParentClassPath);
	Result->SetStringField(TEXT("root_component"), RootComponentName);
	TArray<TSharedPtr<FJsonValue>> Parts;
	for (const FBuiltPart& Built : Build.Parts)
	{
		TSharedPtr<FJsonObject> Part = MakeShared<FJsonObject>();
		Part->SetStringField(TEXT("name"), Built.Part.Name);
		Part->SetStringField(TEXT("component"), Built.Part.Name);
		Part->SetStringField(TEXT("shape"), GetShapeName(Built.Part.Shape));
		Part->SetStringField(TEXT("static_mesh"), Built.StaticMeshPath);
		Part->SetStringField(TEXT("material"), Built.MaterialPath);
		Part->SetStringField(TEXT("material_source"), Built.bMeshMaterial ? TEXT("mesh_default") : TEXT("override_slot_0"));
		Part->SetStringField(TEXT("parent"), IsPrimitiveActorRootName(Built.Part.ParentName) ? FString(RootComponentName) : Built.Part.ParentName);
		Part->SetObjectField(TEXT("relative_transform"), MakeTransformJson(Built.Part.Transform));
		Parts.Add(MakeShared<FJsonValueObject>(Part));
	}
	Result->SetNumberField(TEXT("part_count"), Parts.Num());
	Result->SetArrayField(TEXT("parts"), Parts);
	if (Build.LocalBounds.bIsValid)
	{
		Result->SetObjectField(TEXT("local_bounds"), MakeBoundsJson(Build.LocalBounds));
	}
	Result->SetBoolField(TEXT("compiled"), Build.bCompiled);
	if (Build.bCompiled)
	{
		Result->SetStringField(TEXT("compile_status"), Build.CompileStatus);
		Result->SetNumberField(TEXT("compile_error_count"), Build.CompileErrorCount);
		Result->SetNumberField(TEXT("compile_warning_count"), Build.CompileWarningCount);
		TArray<TSharedPtr<FJsonValue>> Messages;
		for (const FString& Message : Build.CompileMessages)
		{
			Messages.Add(MakeShared<FJsonValueString>(Message));
		}
		Result->SetArrayField(TEXT("compile_messages"), Messages);
	}
	Result->SetArrayField(TEXT("steps"), Build.Steps);
	if (!Build.bSuccess)
	{
		Result->SetStringField(TEXT("failed_step"), Build.FailedStep);
		Result->SetStringField(TEXT("error"), Build.Error);
		Result->SetBoolField(TEXT("asset_created"), Build.bAssetCreated);
		if (Build.bAssetCreated)
		{
			Result->SetStringField(TEXT("created_asset_path"), Build.ObjectPath);
			Result->SetStringField(TEXT("partial_state"),
				TEXT("The Blueprint exists with the root and the parts listed in parts; the bridge cannot delete assets. Fix the cause and call again with another AssetName, or complete it with blueprint_add_component and blueprint_compile."));
		}
		return Result;
	}

	// Ready calls: place the actor at the origin (the bounds there are local_bounds), read it back.
	TArray<TSharedPtr<FJsonValue>> Next;
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("BlueprintNameOrPath"), Build.ObjectPath);
		Arguments->SetStringField(TEXT("AllowCurrentLevel"), TEXT("true"));
		Arguments->SetStringField(TEXT("LocationX"), TEXT("0"));
		Arguments->SetStringField(TEXT("LocationY"), TEXT("0"));
		Arguments->SetStringField(TEXT("LocationZ"), TEXT("0"));
		TSharedPtr<FJsonObject> Call = MakeShared<FJsonObject>();
		Call->SetStringField(TEXT("tool"), TEXT("editor_place_actor"));
		Call->SetObjectField(TEXT("arguments"), Arguments);
		Call->SetStringField(TEXT("purpose"), TEXT("Place the actor in the current editor level (explicit opt-in; tagged for editor_cleanup_repro_actors). Change the location as needed."));
		Next.Add(MakeShared<FJsonValueObject>(Call));
	}
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("AssetNameOrPath"), Build.ObjectPath);
		TSharedPtr<FJsonObject> Call = MakeShared<FJsonObject>();
		Call->SetStringField(TEXT("tool"), TEXT("unreal_inspect_asset"));
		Call->SetObjectField(TEXT("arguments"), Arguments);
		Call->SetStringField(TEXT("purpose"), TEXT("Read the Blueprint asset back."));
		Next.Add(MakeShared<FJsonValueObject>(Call));
	}
	Result->SetArrayField(TEXT("recommended_next_tools"), Next);
	return Result;
}

bool ZorvekMCPBridgePrimitiveActors::MakePresetParts(IZorvekMCPBridgeEditorPort& Port, const FString& Preset, TArray<FPrimitivePart>& OutParts, FString& OutError)
{
	OutParts.Reset();
	const FString Word = Preset.TrimStartAndEnd();
	if (Word.Equals(TEXT("DummyTree"), ESearchCase::IgnoreCase))
	{
		// A trunk 200 cm tall and 40 wide standing on the origin, a crown 240 across over it. The
		// crown hangs under the root, not the trunk, so the trunk's scale does not stretch it.
		FPrimitivePart Trunk;
		Trunk.Name = TEXT("Trunk");
		Trunk.Shape = EPrimitiveShape::Cylinder;
		Trunk.Transform.Location = { 0.0, 0.0, 100.0 };
		Trunk.Transform.Scale = { 0.4, 0.4, 2.0 };
		Trunk.MaterialPath = FindPrimitiveActorProjectMaterial(Port, PrimitiveActorTrunkWords);
		FPrimitivePart Crown;
		Crown.Name = TEXT("Crown");
		Crown.Shape = EPrimitiveShape::Sphere;
		Crown.Transform.Location = { 0.0, 0.0, 260.0 };
		Crown.Transform.Scale = { 2.4, 2.4, 2.4 };
		Crown.MaterialPath = FindPrimitiveActorProjectMaterial(Port, PrimitiveActorCrownWords);
		OutParts.Add(Trunk);
		OutParts.Add(Crown);
		return true;
	}
	if (Word.Equals(TEXT("VisualActor"), ESearchCase::IgnoreCase))
	{
		FPrimitivePart Body;
		Body.Name = TEXT("Body");
		Body.Shape = EPrimitiveShape::Cube;
		Body.Transform.Location = { 0.0, 0.0, 50.0 };
		OutParts.Add(Body);
		return true;
	}
	OutError = FString::Printf(TEXT("Unsupported Preset '%s'. Supported presets: DummyTree, VisualActor."), *Preset);
	return false;
}
