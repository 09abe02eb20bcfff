#include "Tools/ZorvekMCPBridgeEditorWorldTools.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"
#include "World/ZorvekMCPBridgeActorReadback.h"
#include "World/ZorvekMCPBridgeWorldTransformArguments.h"

namespace
{
	using namespace ZorvekMCPBridgeActorReadback;
	using ZorvekMCPBridgeToolArguments::ReadBool;
	using ZorvekMCPBridgeToolArguments::ReadString;
	using ZorvekMCPBridgeWorldTransformArguments::FTransformOverrides;

	const TCHAR* const EditorWorldActorClassPath = TEXT("/Script/Engine.Actor");

	struct FEditorWorldPlaceParams
	{
		bool bAllowCurrentLevel = false;
		FString BlueprintNameOrPath;
		FString ActorClassPath;
		FString ActorLabel;
		FTransformOverrides Transform;

		static FEditorWorldPlaceParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FEditorWorldPlaceParams Params;
			Params.bAllowCurrentLevel = ReadBool(Arguments, TEXT("AllowCurrentLevel"), false);
			Params.BlueprintNameOrPath = ReadString(Arguments, TEXT("BlueprintNameOrPath"), FString());
			Params.ActorClassPath = ReadString(Arguments, TEXT("ActorClassPath"), FString());
			Params.ActorLabel = ReadString(Arguments, TEXT("ActorLabel"), FString());
			Params.Transform = ZorvekMCPBridgeWorldTransformArguments::Read(Arguments);
			return Params;
		}
	};

	struct FEditorWorldSetActorTransformParams
	{
		FString ActorNameOrLabel;
		FTransformOverrides Transform;

		static FEditorWorldSetActorTransformParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FEditorWorldSetActorTransformParams Params;
			Params.ActorNameOrLabel = ReadString(Arguments, TEXT("ActorNameOrLabel"), FString());
			Params.Transform = ZorvekMCPBridgeWorldTransformArguments::Read(Arguments);
			return Params;
		}
	};

	struct FEditorWorldSetComponentTransformParams
	{
		FString ActorNameOrLabel;
		FString ComponentName;
		FTransformOverrides Transform;

		static FEditorWorldSetComponentTransformParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FEditorWorldSetComponentTransformParams Params;
			Params.ActorNameOrLabel = ReadString(Arguments, TEXT("ActorNameOrLabel"), FString());
			Params.ComponentName = ReadString(Arguments, TEXT("ComponentName"), FString()).TrimStartAndEnd();
			Params.Transform = ZorvekMCPBridgeWorldTransformArguments::Read(Arguments);
			return Params;
		}
	};

	struct FEditorWorldReadActorsParams
	{
		FString Filter;
		bool bReproOnly = false;
		int32 Limit = ZorvekMCPBridgeEditorWorldTools::DefaultReadLimit;

		static FEditorWorldReadActorsParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FEditorWorldReadActorsParams Params;
			Params.Filter = ReadString(Arguments, TEXT("Filter"), FString());
			Params.bReproOnly = ReadBool(Arguments, TEXT("ReproOnly"), false);
			Params.Limit = ZorvekMCPBridgeToolArguments::ReadLimit(Arguments, TEXT("Limit"), ZorvekMCPBridgeEditorWorldTools::DefaultReadLimit);
			return Params;
		}
	};

	struct FEditorWorldSelectParams
	{
		FString ActorNameOrLabel;
		bool bClearSelection = true;

		static FEditorWorldSelectParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FEditorWorldSelectParams Params;
			Params.ActorNameOrLabel = ReadString(Arguments, TEXT("ActorNameOrLabel"), FString());
			Params.bClearSelection = ReadBool(Arguments, TEXT("ClearSelection"), true);
			return Params;
		}
	};

	struct FEditorWorldCleanupParams
	{
		FString Filter;
		bool bDryRun = false;

		static FEditorWorldCleanupParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FEditorWorldCleanupParams Params;
			Params.Filter = ReadString(Arguments, TEXT("Filter"), FString());
			Params.bDryRun = ReadBool(Arguments, TEXT("DryRun"), false);
			return Params;
		}
	};

	// The failure of a tool whose result carries a success flag: the flag false and the message.
	TSharedPtr<FJsonObject> MakeEditorWorldFailure(const TCHAR* SuccessKey, const FString& Message)
	{
		TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
		Payload->SetBoolField(SuccessKey, false);
		Payload->SetStringField(TEXT("error"), Message);
		return Payload;
	}

	TSharedPtr<FJsonObject> FailEditorWorldTool(const TCHAR* SuccessKey, const FString& Message)
	{
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(MakeEditorWorldFailure(SuccessKey, Message), true);
	}

	// The failure of the read and cleanup tools: the message and a zero count.
	TSharedPtr<FJsonObject> FailEditorWorldCountingTool(const TCHAR* CountKey, const FString& Message)
	{
		TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
		Payload->SetStringField(TEXT("error"), Message);
		Payload->SetNumberField(CountKey, 0);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, true);
	}

	TSharedPtr<FJsonObject> FailEditorWorldPlacement(const FString& Message, const TSharedPtr<FJsonObject>& ResolveResult = nullptr, const FString& BlueprintAssetPath = FString())
	{
		TSharedPtr<FJsonObject> Payload = MakeEditorWorldFailure(TEXT("placed"), Message);
		if (!BlueprintAssetPath.IsEmpty())
		{
			Payload->SetStringField(TEXT("blueprint_asset_path"), BlueprintAssetPath);
		}
		if (ResolveResult.IsValid())
		{
			Payload->SetObjectField(TEXT("resolve_result"), ResolveResult);
		}
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, true);
	}

	FString MakeEditorWorldUnresolvedClassMessage(const FString& Input)
	{
		return FString::Printf(TEXT("Could not resolve Blueprint actor class from '%s'."), *Input);
	}

	TArray<TSharedPtr<FJsonValue>> ReadEditorWorldReadbacks(const IZorvekMCPBridgeWorld& World, const TArray<FZorvekMCPBridgeObjectHandle>& Actors, bool bSelected)
	{
		TArray<TSharedPtr<FJsonValue>> Readbacks;
		for (const FZorvekMCPBridgeObjectHandle& Actor : Actors)
		{
			if (const TSharedPtr<FJsonObject> Readback = ReadActorReadback(World, Actor, bSelected))
			{
				Readbacks.Add(MakeShared<FJsonValueObject>(Readback));
			}
		}
		return Readbacks;
	}

	// The class a placement spawns, or why there is none. The Blueprint route also reports what
	// resolution found and which Blueprint it loaded.
	struct FEditorWorldPlacementClass
	{
		FString ClassPath;
		FString Error;
		TSharedPtr<FJsonObject> ResolveResult;
		FString BlueprintAssetPath;
	};

	// Loads the object as a Blueprint: invalid when nothing loads or what loads is no Blueprint.
	FZorvekMCPBridgeObjectHandle LoadEditorWorldBlueprint(IZorvekMCPBridgeEditorPort& Port, const FString& ObjectPath, FZorvekMCPBridgeBlueprintSnapshot& OutSnapshot)
	{
		const FZorvekMCPBridgeObjectHandle Object = Port.GetObjects().LoadObject(ObjectPath);
		return Object.IsValid() && Port.GetBlueprints().ReadBlueprint(Object, OutSnapshot) ? Object : FZorvekMCPBridgeObjectHandle();
	}

	FEditorWorldPlacementClass ResolveEditorWorldBlueprintClass(IZorvekMCPBridgeEditorPort& Port, const FString& Input)
	{
		FEditorWorldPlacementClass Result;
		FString BestPath;
		FString ResolveError;
		Result.ResolveResult = ZorvekMCPBridgeAssets::ResolveAssetQuery(Port.GetAssetRegistry(), Input, TEXT("Blueprint"), ZorvekMCPBridgeAssets::DefaultResolveLimit, BestPath, ResolveError);
		Result.Error = MakeEditorWorldUnresolvedClassMessage(Input);

		FString ObjectPath = BestPath.IsEmpty() ? Input : BestPath;
		if (!ObjectPath.Contains(TEXT(".")))
		{
			ObjectPath = ZorvekMCPBridgeAssets::MakeAssetObjectPath(ObjectPath);
		}
		FZorvekMCPBridgeBlueprintSnapshot Snapshot;
		FZorvekMCPBridgeObjectHandle Blueprint = LoadEditorWorldBlueprint(Port, ObjectPath, Snapshot);
		if (!Blueprint.IsValid() && Input.Contains(TEXT(".")))
		{
			Blueprint = LoadEditorWorldBlueprint(Port, Input, Snapshot);
		}
		if (!Blueprint.IsValid())
		{
			return Result;
		}
		Result.BlueprintAssetPath = Snapshot.Path;

		// A Blueprint whose parent is no actor class cannot make an actor class: refuse it before the
		// compile, so a refused placement leaves the Blueprint as it was.
		const FString ActorClass(EditorWorldActorClassPath);
		if (Snapshot.ParentClassPath.IsEmpty() || !Port.GetObjects().IsChildOf(Snapshot.ParentClassPath, ActorClass))
		{
			return Result;
		}
		// Placement uses the class as it is now, not as it was last compiled.
		Port.GetBlueprints().Compile(Blueprint, ZorvekMCPBridgeEditorWorldTools::PlacementCompileFlags);
		FZorvekMCPBridgeBlueprintSnapshot Compiled;
		if (!Port.GetBlueprints().ReadBlueprint(Blueprint, Compiled) || Compiled.GeneratedClassPath.IsEmpty()
			|| !Port.GetObjects().IsChildOf(Compiled.GeneratedClassPath, ActorClass))
		{
			return Result;
		}
		Result.ClassPath = Compiled.GeneratedClassPath;
		Result.Error.Reset();
		return Result;
	}

	FEditorWorldPlacementClass ResolveEditorWorldNativeClass(IZorvekMCPBridgeEditorPort& Port, const FString& Input)
	{
		FEditorWorldPlacementClass Result;
		FZorvekMCPBridgeTypeInfo Class;
		// StaticLoadObject, then StaticFindObject, which takes only full paths.
		const bool bFound = Port.GetObjects().LoadClass(Input, Class)
			|| (Input.Contains(TEXT("/")) && Port.GetObjects().FindType(EZorvekMCPBridgeTypeKind::Class, Input, Class));
		if (!bFound || !Port.GetObjects().IsChildOf(Class.Path, EditorWorldActorClassPath))
		{
			Result.Error = MakeEditorWorldUnresolvedClassMessage(Input);
			return Result;
		}
		Result.ClassPath = Class.Path;
		return Result;
	}

	// The actor the client named, looked up as every world tool looks actors up.
	bool FindEditorWorldActor(const IZorvekMCPBridgeWorld& World, const FString& ActorNameOrLabel, FZorvekMCPBridgeActorEntry& OutActor, FZorvekMCPBridgeActorSnapshot& OutSnapshot)
	{
		return FindActor(World, ActorNameOrLabel, OutActor) && World.ReadActor(OutActor.Actor, OutSnapshot);
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeEditorWorldTools::HandleGetWorldStatus(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("editor_get_world_status"));
	}
	const IZorvekMCPBridgeWorld& World = Context.EditorPort->GetWorld();
	FZorvekMCPBridgeWorldInfo WorldInfo;
	const bool bHasWorld = World.GetEditorWorld(WorldInfo);
	const bool bHasSubsystem = World.IsActorSubsystemAvailable();

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("editor_available"), World.IsEditorAvailable());
	Payload->SetBoolField(TEXT("actor_subsystem_available"), bHasSubsystem);
	Payload->SetBoolField(TEXT("world_available"), bHasWorld);
	Payload->SetStringField(TEXT("placement_scope"), TEXT("current_editor_world_guarded"));
	Payload->SetBoolField(TEXT("requires_allow_current_level"), true);
	Payload->SetBoolField(TEXT("repro_map_creation_supported"), false);
	Payload->SetStringField(TEXT("safety_note"), TEXT("Slice 55 mutates only the current editor world when AllowCurrentLevel=true and tags all placed actors for deterministic cleanup."));
	if (bHasWorld)
	{
		Payload->SetStringField(TEXT("world_name"), WorldInfo.Name);
		Payload->SetStringField(TEXT("world_path"), WorldInfo.Path);
		Payload->SetStringField(TEXT("package_name"), WorldInfo.PackageName);
	}
	if (bHasSubsystem)
	{
		const TArray<FZorvekMCPBridgeObjectHandle> Selected = World.GetSelectedLevelActors();
		Payload->SetNumberField(TEXT("actor_count"), World.GetAllLevelActors().Num());
		Payload->SetNumberField(TEXT("selected_actor_count"), Selected.Num());
		Payload->SetArrayField(TEXT("selected_actors"), ReadEditorWorldReadbacks(World, Selected, true));
	}
	else
	{
		Payload->SetNumberField(TEXT("actor_count"), 0);
		Payload->SetNumberField(TEXT("selected_actor_count"), 0);
	}
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeEditorWorldTools::HandlePlaceActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("editor_place_actor"));
	}
	const FEditorWorldPlaceParams Params = FEditorWorldPlaceParams::Read(Arguments);
	// The opt-in comes before anything else is looked at.
	if (!Params.bAllowCurrentLevel)
	{
		return FailEditorWorldPlacement(TEXT("editor_place_actor requires AllowCurrentLevel=true because this mutates the current editor world."));
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	FZorvekMCPBridgeWorldInfo WorldInfo;
	if (!World.IsActorSubsystemAvailable() || !World.GetEditorWorld(WorldInfo))
	{
		return FailEditorWorldPlacement(TEXT("Editor actor subsystem or editor world is unavailable."));
	}
	// Bad numbers are refused before a Blueprint is compiled or anything is spawned.
	if (!Params.Transform.IsValid())
	{
		return FailEditorWorldPlacement(Params.Transform.Error);
	}

	const bool bBlueprintRoute = !Params.BlueprintNameOrPath.IsEmpty();
	FEditorWorldPlacementClass Class;
	if (bBlueprintRoute)
	{
		Class = ResolveEditorWorldBlueprintClass(Port, Params.BlueprintNameOrPath);
	}
	else if (!Params.ActorClassPath.IsEmpty())
	{
		Class = ResolveEditorWorldNativeClass(Port, Params.ActorClassPath);
	}
	else
	{
		return FailEditorWorldPlacement(TEXT("editor_place_actor requires BlueprintNameOrPath for an Actor Blueprint or ActorClassPath for an Actor class."));
	}
	if (!Class.Error.IsEmpty())
	{
		return FailEditorWorldPlacement(Class.Error, Class.ResolveResult, Class.BlueprintAssetPath);
	}

	const FZorvekMCPBridgeTransform Transform = Params.Transform.ApplyTo(FZorvekMCPBridgeTransform());
	const FZorvekMCPBridgeObjectHandle Actor = World.SpawnActorFromClass(Class.ClassPath, Transform.Location, Transform.Rotation);
	if (!Actor.IsValid())
	{
		return FailEditorWorldPlacement(FString::Printf(TEXT("Could not spawn actor of class '%s'."), *Class.ClassPath), Class.ResolveResult, Class.BlueprintAssetPath);
	}
	// The subsystem spawns without scale or label; both come afterwards, as in the editor.
	World.SetActorScale3D(Actor, Transform.Scale);
	if (!Params.ActorLabel.IsEmpty())
	{
		World.SetActorLabel(Actor, Params.ActorLabel);
	}
	World.AddActorTags(Actor, {FName(BridgeTag), FName(ReproTag), FName(VisualPcgTag)});
	World.SelectNothing();
	World.SetActorSelectionState(Actor, true);

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("placed"), true);
	if (bBlueprintRoute)
	{
		Payload->SetStringField(TEXT("blueprint_asset_path"), Class.BlueprintAssetPath);
		Payload->SetObjectField(TEXT("resolve_result"), Class.ResolveResult);
	}
	const TSharedPtr<FJsonObject> Readback = ReadActorReadback(World, Actor, true);
	Payload->SetObjectField(TEXT("actor"), Readback.IsValid() ? Readback : MakeShared<FJsonObject>());
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeEditorWorldTools::HandleSetActorTransform(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("editor_set_actor_transform"));
	}
	const FEditorWorldSetActorTransformParams Params = FEditorWorldSetActorTransformParams::Read(Arguments);
	IZorvekMCPBridgeWorld& World = Context.EditorPort->GetWorld();
	FZorvekMCPBridgeActorEntry Actor;
	FZorvekMCPBridgeActorSnapshot Snapshot;
	if (!FindEditorWorldActor(World, Params.ActorNameOrLabel, Actor, Snapshot))
	{
		return FailEditorWorldTool(TEXT("updated"), MakeActorNotFoundMessage(Params.ActorNameOrLabel));
	}
	if (!Params.Transform.IsValid())
	{
		return FailEditorWorldTool(TEXT("updated"), Params.Transform.Error);
	}
	// Absent keys keep the actor's current values (its root's world transform, identity without one).
	const FZorvekMCPBridgeTransform Current = Snapshot.bHasRootComponent ? Snapshot.RootTransform : FZorvekMCPBridgeTransform();
	World.SetActorTransform(Actor.Actor, Params.Transform.ApplyTo(Current));

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("updated"), true);
	const TSharedPtr<FJsonObject> Readback = ReadActorReadback(World, Actor.Actor, false);
	Payload->SetObjectField(TEXT("actor"), Readback.IsValid() ? Readback : MakeShared<FJsonObject>());
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeEditorWorldTools::HandleSetComponentTransform(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("editor_set_component_transform"));
	}
	const FEditorWorldSetComponentTransformParams Params = FEditorWorldSetComponentTransformParams::Read(Arguments);
	IZorvekMCPBridgeWorld& World = Context.EditorPort->GetWorld();
	FZorvekMCPBridgeActorEntry Actor;
	FZorvekMCPBridgeActorSnapshot Snapshot;
	if (!FindEditorWorldActor(World, Params.ActorNameOrLabel, Actor, Snapshot))
	{
		return FailEditorWorldTool(TEXT("updated"), MakeActorNotFoundMessage(Params.ActorNameOrLabel));
	}
	if (Params.ComponentName.IsEmpty())
	{
		return FailEditorWorldTool(TEXT("updated"), TEXT("editor_set_component_transform requires ComponentName."));
	}

	const FZorvekMCPBridgeActorComponentSnapshot* Target = nullptr;
	TArray<TSharedPtr<FJsonValue>> SceneComponentNames;
	for (const FZorvekMCPBridgeActorComponentSnapshot& Component : Snapshot.Components)
	{
		if (!Component.bIsSceneComponent)
		{
			continue;
		}
		SceneComponentNames.Add(MakeShared<FJsonValueString>(Component.Name));
		if (!Target && Component.Name.Equals(Params.ComponentName, ESearchCase::IgnoreCase))
		{
			Target = &Component;
		}
	}
	if (!Target)
	{
		TSharedPtr<FJsonObject> Payload = MakeEditorWorldFailure(TEXT("updated"),
			FString::Printf(TEXT("No component named '%s' found on actor '%s'."), *Params.ComponentName, *Actor.Label));
		Payload->SetArrayField(TEXT("available_components"), SceneComponentNames);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, true);
	}
	if (!Params.Transform.IsValid())
	{
		return FailEditorWorldTool(TEXT("updated"), Params.Transform.Error);
	}
	const FZorvekMCPBridgeObjectHandle Component = Target->Component;
	const FString ComponentName = Target->Name;
	FZorvekMCPBridgeTransform NewRelative = Params.Transform.ApplyTo(Target->RelativeTransform);
	World.SetComponentRelativeTransform(Component, NewRelative);

	// The new relative transform as the component now reports it.
	FZorvekMCPBridgeActorSnapshot Updated;
	const bool bReadBack = World.ReadActor(Actor.Actor, Updated);
	for (const FZorvekMCPBridgeActorComponentSnapshot& Candidate : Updated.Components)
	{
		if (Candidate.Component == Component)
		{
			NewRelative = Candidate.RelativeTransform;
		}
	}

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("updated"), true);
	Payload->SetStringField(TEXT("component_name"), ComponentName);
	Payload->SetObjectField(TEXT("component_relative_transform"), MakeTransformJson(NewRelative));
	Payload->SetObjectField(TEXT("actor"), bReadBack ? MakeActorReadback(Updated, false) : MakeShared<FJsonObject>());
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeEditorWorldTools::HandleReadLevelActors(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("editor_read_level_actors"));
	}
	const IZorvekMCPBridgeWorld& World = Context.EditorPort->GetWorld();
	if (!World.IsActorSubsystemAvailable())
	{
		return FailEditorWorldCountingTool(TEXT("result_count"), TEXT("Editor actor subsystem is unavailable."));
	}
	const FEditorWorldReadActorsParams Params = FEditorWorldReadActorsParams::Read(Arguments);

	TSet<FZorvekMCPBridgeObjectHandle> Selected;
	for (const FZorvekMCPBridgeObjectHandle& Actor : World.GetSelectedLevelActors())
	{
		Selected.Add(Actor);
	}
	// Matching runs on the cheap entries; only the actors emitted are read in full.
	int32 MatchedCount = 0;
	TArray<TSharedPtr<FJsonValue>> Actors;
	for (const FZorvekMCPBridgeActorEntry& Actor : World.GetAllLevelActors())
	{
		if (!Actor.Actor.IsValid() || (Params.bReproOnly && !IsReproActor(Actor.Tags)) || !MatchesFilter(Actor, Params.Filter))
		{
			continue;
		}
		++MatchedCount;
		if (Actors.Num() < Params.Limit)
		{
			if (const TSharedPtr<FJsonObject> Readback = ReadActorReadback(World, Actor.Actor, Selected.Contains(Actor.Actor)))
			{
				Actors.Add(MakeShared<FJsonValueObject>(Readback));
			}
		}
	}

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetStringField(TEXT("filter"), Params.Filter);
	Payload->SetBoolField(TEXT("repro_only"), Params.bReproOnly);
	Payload->SetNumberField(TEXT("matched_count"), MatchedCount);
	Payload->SetNumberField(TEXT("result_count"), Actors.Num());
	Payload->SetArrayField(TEXT("actors"), Actors);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeEditorWorldTools::HandleSelectActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("editor_select_actor"));
	}
	const FEditorWorldSelectParams Params = FEditorWorldSelectParams::Read(Arguments);
	IZorvekMCPBridgeWorld& World = Context.EditorPort->GetWorld();
	FZorvekMCPBridgeActorEntry Actor;
	if (!FindActor(World, Params.ActorNameOrLabel, Actor))
	{
		return FailEditorWorldTool(TEXT("selected"), MakeActorNotFoundMessage(Params.ActorNameOrLabel));
	}
	if (Params.bClearSelection)
	{
		World.SelectNothing();
	}
	World.SetActorSelectionState(Actor.Actor, true);

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("selected"), true);
	const TSharedPtr<FJsonObject> Readback = ReadActorReadback(World, Actor.Actor, true);
	Payload->SetObjectField(TEXT("actor"), Readback.IsValid() ? Readback : MakeShared<FJsonObject>());
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeEditorWorldTools::HandleCleanupReproActors(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("editor_cleanup_repro_actors"));
	}
	IZorvekMCPBridgeWorld& World = Context.EditorPort->GetWorld();
	if (!World.IsActorSubsystemAvailable())
	{
		return FailEditorWorldCountingTool(TEXT("deleted_count"), TEXT("Editor actor subsystem is unavailable."));
	}
	const FEditorWorldCleanupParams Params = FEditorWorldCleanupParams::Read(Arguments);

	// The repro test comes first and alone decides what may go; the filter only narrows it.
	TArray<FZorvekMCPBridgeObjectHandle> Collected;
	for (const FZorvekMCPBridgeActorEntry& Actor : World.GetAllLevelActors())
	{
		if (Actor.Actor.IsValid() && IsReproActor(Actor.Tags) && MatchesFilter(Actor, Params.Filter))
		{
			Collected.Add(Actor.Actor);
		}
	}
	const TArray<TSharedPtr<FJsonValue>> MatchedActors = ReadEditorWorldReadbacks(World, Collected, false);

	int32 DeletedCount = 0;
	if (!Params.bDryRun && Collected.Num() > 0)
	{
		DeletedCount = Collected.Num();
		if (!World.DestroyActors(Collected))
		{
			// Count only what is really gone, never more.
			TSet<FZorvekMCPBridgeObjectHandle> Remaining;
			for (const FZorvekMCPBridgeActorEntry& Actor : World.GetAllLevelActors())
			{
				Remaining.Add(Actor.Actor);
			}
			for (const FZorvekMCPBridgeObjectHandle& Actor : Collected)
			{
				DeletedCount -= Remaining.Contains(Actor) ? 1 : 0;
			}
		}
	}

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetStringField(TEXT("filter"), Params.Filter);
	Payload->SetBoolField(TEXT("dry_run"), Params.bDryRun);
	Payload->SetNumberField(TEXT("matched_count"), Collected.Num());
	Payload->SetNumberField(TEXT("deleted_count"), DeletedCount);
	Payload->SetArrayField(TEXT("matched_actors"), MatchedActors);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}
