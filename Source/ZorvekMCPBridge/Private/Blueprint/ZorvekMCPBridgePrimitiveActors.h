// Actor Blueprints built from the engine's basic shapes: a typed list of parts (shape, relative
// transform, material, parent part) becomes a new Blueprint whose construction script holds a plain
// scene root named "Root" and one StaticMeshComponent per part. Everything is checked before the
// Blueprint is created (the checks blueprint_create makes, the parent class, names, shapes, numbers,
// materials, parents and cycles); then the Blueprint is created, the parts are added with the
// blueprint_add_component operation, and the Blueprint is compiled. blueprint_create_primitive_actor
// and the road, intersection and skyscraper generators build through here.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeWorldPort.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgePrimitiveActors
{
	// More parts than this are refused: a 200-floor skyscraper with window bands stays below it,
	// and the construction script of a larger actor is better made as several actors.
	constexpr int32 MaxParts = 128;
	// The scene component every part hangs under. Not the Blueprint's DefaultSceneRoot: that one
	// shows an editor sprite whose box joins the actor's bounds (unreal-behaviour-world-assets.md
	// §2.4), so the placed bounds would not be the parts' bounds.
	extern const TCHAR* const RootComponentName;
	// What a part without MaterialPath shows: the basic shapes' own material.
	extern const TCHAR* const BasicShapeMaterialPath;

	enum class EPrimitiveShape : uint8
	{
		Cube,
		Sphere,
		Cylinder,
		Cone,
		Plane
	};

	// The shape for a word (any case); false for other words.
	bool ParseShape(const FString& Word, EPrimitiveShape& OutShape);
	const TCHAR* GetShapeName(EPrimitiveShape Shape);
	// The mesh's box around its pivot: 100 cm on each side, centred; the plane is flat
	// (unreal-behaviour-world-assets.md §2.4).
	FZorvekMCPBridgeVector GetShapeExtent(EPrimitiveShape Shape);

	struct FPrimitivePart
	{
		FString Name;
		EPrimitiveShape Shape = EPrimitiveShape::Cube;
		// Relative to the parent part, or to the root.
		FZorvekMCPBridgeTransform Transform;
		// Empty: the mesh's own material.
		FString MaterialPath;
		// Another part's name, or empty (or the root's name) for the root.
		FString ParentName;
	};

	struct FPrimitiveActorSpec
	{
		FString PackagePath;
		FString AssetName;
		// Empty: /Script/Engine.Actor.
		FString ParentClassPath;
		TArray<FPrimitivePart> Parts;
		bool bCompile = true;
		// The tool named in the message for a missing PackagePath or AssetName.
		FString ToolName = TEXT("blueprint_create_primitive_actor");
	};

	// A part as it was (or will be) built: its mesh and material as object paths.
	struct FBuiltPart
	{
		FPrimitivePart Part;
		FString StaticMeshPath;
		FString MaterialPath;
		// The material comes from the mesh (no override in slot 0).
		bool bMeshMaterial = true;
	};

	struct FPrimitiveActorBuild
	{
		bool bSuccess = false;
		// The check or step that failed and its message.
		FString FailedStep;
		FString Error;
		// Whether the Blueprint asset exists after the call (it does from the create step on, even
		// when a later step failed: the editor port deletes no assets).
		bool bAssetCreated = false;
		FString AssetPath;
		FString ObjectPath;
		FString ParentClassPath;
		// Parents before children, in the order they were added.
		TArray<FBuiltPart> Parts;
		// The box the parts fill around the actor's origin, as the placed actor's bounds will be at
		// the origin with no rotation and unit scale.
		FZorvekMCPBridgeBox LocalBounds;
		bool bCompiled = false;
		FString CompileStatus;
		int32 CompileErrorCount = 0;
		int32 CompileWarningCount = 0;
		TArray<FString> CompileMessages;
		// {"step", "success", "detail"} per step taken.
		TArray<TSharedPtr<FJsonValue>> Steps;
	};

	// Every check of BuildPrimitiveActor that runs before the Blueprint is created. On success
	// OutParts holds the parts in build order (parents first) with their resolved mesh and material.
	// False with the message otherwise; nothing has changed either way.
	bool ValidateSpec(IZorvekMCPBridgeEditorPort& Port, const FPrimitiveActorSpec& Spec, TArray<FBuiltPart>& OutParts, FString& OutError);

	// The box the parts fill around the actor's origin (parents' transforms applied, rotated boxes
	// taken as their axis-aligned box, as the engine takes component bounds). The parts must have
	// passed ValidateSpec (known parents, no cycles). Invalid for no parts.
	FZorvekMCPBridgeBox ComputeLocalBounds(const TArray<FPrimitivePart>& Parts);

	// Validates, creates the Blueprint, adds the root and the parts, compiles when asked. A refusal
	// in validation leaves everything as it was (bAssetCreated false).
	FPrimitiveActorBuild BuildPrimitiveActor(IZorvekMCPBridgeEditorPort& Port, const FPrimitiveActorSpec& Spec);

	// The answer of the tools: asset and parts, bounds, compile outcome, steps and the next tools
	// (editor_place_actor with ready arguments, unreal_inspect_asset). For a failure after creation
	// began, also what exists.
	TSharedPtr<FJsonObject> MakeBuildJson(const FPrimitiveActorBuild& Build);

	// The shape presets: "DummyTree" (a cylinder trunk and a sphere crown, with the project's first
	// bark/wood and leaf/foliage materials under /Game when it has them) and "VisualActor" (one cube
	// standing on the origin). False with the message for another word.
	bool MakePresetParts(IZorvekMCPBridgeEditorPort& Port, const FString& Preset, TArray<FPrimitivePart>& OutParts, FString& OutError);
}
