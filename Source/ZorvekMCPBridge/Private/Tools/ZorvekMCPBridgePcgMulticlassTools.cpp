#include "Tools/ZorvekMCPBridgePcgMulticlassTools.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Pcg/ZorvekMCPBridgePcgComponentState.h"
#include "Pcg/ZorvekMCPBridgePcgForest.h"
#include "Pcg/ZorvekMCPBridgePcgProbe.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"
#include "World/ZorvekMCPBridgeActorReadback.h"

namespace
{
	// A handful of classes shows the split; more would only thin each set out.
	constexpr int32 PcgMulticlassMinClasses = 2;
	constexpr int32 PcgMulticlassMaxClasses = 8;
	const TCHAR* const PcgMulticlassActorClassPath = TEXT("/Script/Engine.Actor");

	struct FPcgMulticlassParams
	{
		bool bAllowCurrentLevel = false;
		FString ForestActorNameOrLabel;
		TArray<FString> ActorClasses;
		int32 MaxActors = ZorvekMCPBridgePcgForest::DefaultVisualOutputActors;
		FString Error;

		static FPcgMulticlassParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FPcgMulticlassParams Params;
			Params.bAllowCurrentLevel = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("AllowCurrentLevel"), false);
			Params.ForestActorNameOrLabel = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("ForestActorNameOrLabel"), FString()).TrimStartAndEnd();
			Params.ForestActorNameOrLabel = Params.ForestActorNameOrLabel.IsEmpty() ? FString(TEXT("ZorvekPCGForest")) : Params.ForestActorNameOrLabel;
			Params.MaxActors = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("MaxActors"), Params.MaxActors);
			const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
			const TSharedPtr<FJsonValue> Field = Arguments.IsValid() ? Arguments->TryGetField(TEXT("ActorClasses")) : nullptr;
			if (Field.IsValid() && Field->TryGetArray(Array))
			{
				for (const TSharedPtr<FJsonValue>& Value : *Array)
				{
					FString Text;
					if (!Value.IsValid() || !Value->TryGetString(Text) || Text.TrimStartAndEnd().IsEmpty())
					{
						Params.Error = TEXT("ActorClasses must hold actor class paths as strings.");
						return Params;
					}
					Params.ActorClasses.Add(Text.TrimStartAndEnd());
				}
			}
			else if (Field.IsValid() && Field->Type != EJson::Null)
			{
				Params.Error = TEXT("ActorClasses must be an array of actor class paths.");
				return Params;
			}
			if (Params.ActorClasses.Num() < PcgMulticlassMinClasses || Params.ActorClasses.Num() > PcgMulticlassMaxClasses)
			{
				Params.Error = FString::Printf(TEXT("pcg_multiclass_spawn_proof requires ActorClasses: %d to %d actor class paths."), PcgMulticlassMinClasses, PcgMulticlassMaxClasses);
			}
			else if (Params.MaxActors < 1 || Params.MaxActors > ZorvekMCPBridgePcgForest::MaxVisualOutputActors)
			{
				Params.Error = FString::Printf(TEXT("MaxActors must be between 1 and %d."), ZorvekMCPBridgePcgForest::MaxVisualOutputActors);
			}
			return Params;
		}
	};

	TSharedPtr<FJsonObject> FailPcgMulticlass(const FString& Message)
	{
		TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
		Payload->SetBoolField(TEXT("success"), false);
		Payload->SetBoolField(TEXT("placed"), false);
		Payload->SetStringField(TEXT("tool"), TEXT("pcg_multiclass_spawn_proof"));
		Payload->SetStringField(TEXT("error"), Message);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, true);
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgMulticlassTools::HandleMulticlassSpawnProof(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	using namespace ZorvekMCPBridgePcgForest;
	const TCHAR* const ToolName = TEXT("pcg_multiclass_spawn_proof");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(ToolName);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, ToolName, Arguments, TEXT("multiclass_spawn_proof"));
	}
	const FPcgMulticlassParams Params = FPcgMulticlassParams::Read(Arguments);
	if (!Params.bAllowCurrentLevel)
	{
		return FailPcgMulticlass(TEXT("pcg_multiclass_spawn_proof requires AllowCurrentLevel=true because this mutates the current editor world."));
	}
	FZorvekMCPBridgeWorldInfo WorldInfo;
	if (!World.IsActorSubsystemAvailable() || !World.GetEditorWorld(WorldInfo))
	{
		return FailPcgMulticlass(TEXT("Editor actor subsystem or editor world is unavailable."));
	}
	if (!Params.Error.IsEmpty())
	{
		return FailPcgMulticlass(Params.Error);
	}
	TArray<FString> ClassPaths;
	for (const FString& Requested : Params.ActorClasses)
	{
		FZorvekMCPBridgeTypeInfo Class;
		if (!Port.GetObjects().LoadClass(Requested, Class) || !Port.GetObjects().IsChildOf(Class.Path, PcgMulticlassActorClassPath))
		{
			return FailPcgMulticlass(FString::Printf(TEXT("'%s' is not an actor class."), *Requested));
		}
		ClassPaths.Add(Class.Path);
	}
	const FForestActor Forest = FindForestActor(Port, Params.ForestActorNameOrLabel);
	if (!Forest.bFound)
	{
		return FailPcgMulticlass(ZorvekMCPBridgeActorReadback::MakeActorNotFoundMessage(Params.ForestActorNameOrLabel));
	}
	if (!Forest.Component.IsValid())
	{
		return FailPcgMulticlass(TEXT("Forest actor has no PCG component."));
	}
	if (!ZorvekMCPBridgePcgComponentState::ReadGenerated(Port, Forest.Component))
	{
		return FailPcgMulticlass(TEXT("Forest actor has not generated yet. Call pcg_generate (or a forest recipe), let the editor tick, then call this again."));
	}

	// Point i goes to class i modulo the class count: one actor set per class. The new sets stand
	// before the forest's earlier stand-ins go, so a failed spawn leaves the level as it was.
	const FString ForestLabel = Forest.Snapshot.Entry.Label;
	const TArray<FZorvekMCPBridgeObjectHandle> Previous = FindVisualOutputs(Port, ForestLabel);
	const TArray<FZorvekMCPBridgeVector> Points = ReadGeneratedPoints(Port, Forest.Component, Params.MaxActors + 1);
	const bool bTruncated = Points.Num() > Params.MaxActors;
	const int32 PlaceCount = FMath::Min(Points.Num(), Params.MaxActors);
	TArray<FZorvekMCPBridgeObjectHandle> Placed;
	TArray<int32> CountPerClass;
	for (int32 ClassIndex = 0; ClassIndex < ClassPaths.Num(); ++ClassIndex)
	{
		CountPerClass.Add(0);
	}
	for (int32 Index = 0; Index < PlaceCount; ++Index)
	{
		const int32 ClassIndex = Index % ClassPaths.Num();
		const FZorvekMCPBridgeObjectHandle Actor = World.SpawnActorFromClass(ClassPaths[ClassIndex], Points[Index], FZorvekMCPBridgeRotator());
		if (!Actor.IsValid())
		{
			World.DestroyActors(Placed);
			return FailPcgMulticlass(FString::Printf(TEXT("Could not spawn actor of class '%s'."), *ClassPaths[ClassIndex]));
		}
		Placed.Add(Actor);
		++CountPerClass[ClassIndex];
		World.SetActorLabel(Actor, FString::Printf(TEXT("%s_Class%d"), *ForestLabel, ClassIndex + 1));
		World.AddActorTags(Actor, {FName(ZorvekMCPBridgeActorReadback::BridgeTag), FName(ZorvekMCPBridgeActorReadback::ReproTag),
			FName(ZorvekMCPBridgeActorReadback::VisualPcgTag), FName(VisualOutputTag), FName(*MakeForestOutputTag(ForestLabel)),
			FName(*FString::Printf(TEXT("ZorvekPCGClassSet_%d"), ClassIndex + 1))});
	}
	World.DestroyActors(Previous);

	TArray<TSharedPtr<FJsonValue>> Sets;
	for (int32 ClassIndex = 0; ClassIndex < ClassPaths.Num(); ++ClassIndex)
	{
		TSharedPtr<FJsonObject> Set = MakeShared<FJsonObject>();
		Set->SetStringField(TEXT("class_path"), ClassPaths[ClassIndex]);
		Set->SetStringField(TEXT("label"), FString::Printf(TEXT("%s_Class%d"), *ForestLabel, ClassIndex + 1));
		Set->SetStringField(TEXT("tag"), FString::Printf(TEXT("ZorvekPCGClassSet_%d"), ClassIndex + 1));
		Set->SetNumberField(TEXT("actor_count"), CountPerClass[ClassIndex]);
		Sets.Add(MakeShared<FJsonValueObject>(Set));
	}
	TSharedPtr<FJsonObject> Unsupported = MakeShared<FJsonObject>();
	Unsupported->SetStringField(TEXT("capability"), TEXT("pcg_true_multi_class_spawn"));
	Unsupported->SetStringField(TEXT("reason"), TEXT("No PCG spawner node is authored that picks among several actor classes; the classes are separate actor sets placed by the bridge at the generated points."));

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetBoolField(TEXT("placed"), true);
	Payload->SetStringField(TEXT("forest_actor_label"), ForestLabel);
	Payload->SetArrayField(TEXT("class_sets"), Sets);
	Payload->SetNumberField(TEXT("visual_output_count"), Placed.Num());
	Payload->SetNumberField(TEXT("removed_visual_output_count"), Previous.Num());
	Payload->SetBoolField(TEXT("truncated"), bTruncated);
	Payload->SetNumberField(TEXT("max_actors"), Params.MaxActors);
	Payload->SetObjectField(TEXT("unsupported"), Unsupported);
	Payload->SetStringField(TEXT("cleanup"), FString::Printf(TEXT("editor_cleanup_repro_actors with Filter %s removes the forest with these actors."), *ForestLabel));
	Payload->SetStringField(TEXT("note"), TEXT("One actor set per class at the forest's generated points, split in turn; the forest's own graph still spawns its weighted meshes. True multi-class spawning from one PCG node is unsupported."));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}
