#include "Tools/ZorvekMCPBridgePcgTools.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Pcg/ZorvekMCPBridgePcgComponentState.h"
#include "Pcg/ZorvekMCPBridgePcgProbe.h"
#include "Pcg/ZorvekMCPBridgePcgReflection.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"
#include "World/ZorvekMCPBridgeActorReadback.h"

namespace
{
	struct FPcgForestActorParams
	{
		// As passed: the lookup trims it, the result reports it untouched.
		FString ForestActorNameOrLabel;

		static FPcgForestActorParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FPcgForestActorParams Params;
			Params.ForestActorNameOrLabel = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("ForestActorNameOrLabel"), FString());
			return Params;
		}
	};

	// The forest actor named by the argument, read whole; bFound false for an empty argument or
	// when nothing matches.
	struct FPcgForestActor
	{
		bool bFound = false;
		bool bSelected = false;
		FZorvekMCPBridgeActorSnapshot Snapshot;
		FZorvekMCPBridgeObjectHandle Component;
	};

	FPcgForestActor FindPcgForestActor(IZorvekMCPBridgeEditorPort& Port, const FString& ForestActorNameOrLabel)
	{
		FPcgForestActor Found;
		IZorvekMCPBridgeWorld& World = Port.GetWorld();
		FZorvekMCPBridgeActorEntry Entry;
		if (ForestActorNameOrLabel.IsEmpty() || !ZorvekMCPBridgeActorReadback::FindActor(World, ForestActorNameOrLabel, Entry)
			|| !World.ReadActor(Entry.Actor, Found.Snapshot))
		{
			return Found;
		}
		Found.bFound = true;
		Found.bSelected = World.GetSelectedLevelActors().Contains(Entry.Actor);
		Found.Component = ZorvekMCPBridgePcgReflection::FindPcgComponent(Port, Found.Snapshot);
		return Found;
	}

}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgTools::HandleGenerate(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("pcg_generate"));
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	const FZorvekMCPBridgePcgStatus Status = ZorvekMCPBridgePcgProbe::Probe(Port.GetWorld());
	if (!Status.IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(Port.GetWorld(), TEXT("pcg_generate"), Arguments, TEXT("generate"));
	}
	const FPcgForestActorParams Params = FPcgForestActorParams::Read(Arguments);
	const FPcgForestActor Forest = FindPcgForestActor(Port, Params.ForestActorNameOrLabel);

	// Generation is asynchronous: the request only schedules it, and the state read below is
	// the one before the new run.
	bool bRequested = false;
	FString GenerateError;
	if (Forest.Component.IsValid())
	{
		bRequested = ZorvekMCPBridgePcgReflection::CallWithFlag(Port, Forest.Component, TEXT("PCG component"), TEXT("GenerateLocal"), true, GenerateError);
	}

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), bRequested);
	Payload->SetBoolField(TEXT("generation_requested"), bRequested);
	Payload->SetStringField(TEXT("status"), bRequested ? TEXT("pcg_generation_requested") : TEXT("pcg_generation_request_failed"));
	Payload->SetObjectField(TEXT("pcg_status"), ZorvekMCPBridgePcgProbe::MakeStatusObject(Status));
	Payload->SetStringField(TEXT("forest_actor_name_or_label"), Params.ForestActorNameOrLabel);
	if (Forest.bFound)
	{
		Payload->SetObjectField(TEXT("actor"), ZorvekMCPBridgeActorReadback::MakeActorReadback(Forest.Snapshot, Forest.bSelected));
	}
	if (Forest.Component.IsValid())
	{
		Payload->SetObjectField(TEXT("pcg_component"), ZorvekMCPBridgePcgComponentState::MakeComponentState(Port, Forest.Component));
		Payload->SetBoolField(TEXT("generated"), ZorvekMCPBridgePcgComponentState::ReadGenerated(Port, Forest.Component));
		Payload->SetStringField(TEXT("note"), TEXT("This requests graph execution and reports PCG component output state. Visible forest/spawn generation is still not implemented."));
	}
	else
	{
		Payload->SetBoolField(TEXT("generated"), false);
		Payload->SetStringField(TEXT("error"), Forest.bFound ? TEXT("Forest actor has no PCG component.") : TEXT("Forest actor was not found."));
	}
	if (!bRequested && !GenerateError.IsEmpty())
	{
		Payload->SetStringField(TEXT("generate_error"), GenerateError);
	}
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, !bRequested);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgTools::HandleInspectGenerated(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("pcg_inspect_generated"));
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	// Read-only, so it reports what it finds even when PCG cannot be used.
	const FZorvekMCPBridgePcgStatus Status = ZorvekMCPBridgePcgProbe::Probe(World);
	const FPcgForestActorParams Params = FPcgForestActorParams::Read(Arguments);
	const FPcgForestActor Forest = FindPcgForestActor(Port, Params.ForestActorNameOrLabel);

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), Forest.bFound);
	if (Forest.bFound)
	{
		Payload->SetBoolField(TEXT("generated"), Forest.Component.IsValid() && ZorvekMCPBridgePcgComponentState::ReadGenerated(Port, Forest.Component));
	}
	// Placeholders in their reporting order, overwritten below.
	Payload->SetNumberField(TEXT("generated_count"), 0);
	Payload->SetNumberField(TEXT("visual_output_count"), 0);
	Payload->SetNumberField(TEXT("native_spawned_actor_count"), 0);
	Payload->SetBoolField(TEXT("native_pcg_spawn_actor_generation"), false);
	Payload->SetStringField(TEXT("status"), Status.IsAvailable() ? TEXT("pcg_generated_output_inspected") : TEXT("pcg_unavailable"));
	Payload->SetObjectField(TEXT("pcg_status"), ZorvekMCPBridgePcgProbe::MakeStatusObject(Status));
	Payload->SetStringField(TEXT("forest_actor_name_or_label"), Params.ForestActorNameOrLabel);

	int32 NativeSpawnedActorCount = 0;
	if (Forest.bFound)
	{
		Payload->SetObjectField(TEXT("actor"), ZorvekMCPBridgeActorReadback::MakeActorReadback(Forest.Snapshot, Forest.bSelected));
		if (Forest.Component.IsValid())
		{
			const TSharedPtr<FJsonObject> State = ZorvekMCPBridgePcgComponentState::MakeComponentState(Port, Forest.Component);
			Payload->SetObjectField(TEXT("pcg_component"), State);
			NativeSpawnedActorCount = (int32)State->GetNumberField(TEXT("native_spawned_actor_count"));
			Payload->SetNumberField(TEXT("native_spawned_actor_count"), NativeSpawnedActorCount);
			const TSharedPtr<FJsonObject>* GraphOutput = nullptr;
			if (State->TryGetObjectField(TEXT("generated_graph_output"), GraphOutput))
			{
				Payload->SetNumberField(TEXT("generated_count"), (*GraphOutput)->GetNumberField(TEXT("total_point_count")));
			}
		}
	}

	// The stand-ins pcg_create_visual_repro_output makes carry the visual output tag and a tag
	// formed with the forest actor's label (the name agents see in the outliner).
	TArray<TSharedPtr<FJsonValue>> VisualOutputs;
	if (Forest.bFound)
	{
		const FName VisualOutputTag(TEXT("ZorvekPCGVisualOutput"));
		const FName ForestOutputTag(*FString::Printf(TEXT("ZorvekPCGForestOutput_%s"), *Forest.Snapshot.Entry.Label));
		const TArray<FZorvekMCPBridgeObjectHandle> Selected = World.GetSelectedLevelActors();
		for (const FZorvekMCPBridgeActorEntry& Actor : World.GetAllLevelActors())
		{
			if (Actor.Tags.Contains(VisualOutputTag) && Actor.Tags.Contains(ForestOutputTag))
			{
				const TSharedPtr<FJsonObject> Readback = ZorvekMCPBridgeActorReadback::ReadActorReadback(World, Actor.Actor, Selected.Contains(Actor.Actor));
				if (Readback.IsValid())
				{
					VisualOutputs.Add(MakeShared<FJsonValueObject>(Readback));
				}
			}
		}
	}
	Payload->SetNumberField(TEXT("visual_output_count"), VisualOutputs.Num());
	Payload->SetArrayField(TEXT("visual_output_actors"), VisualOutputs);
	Payload->SetBoolField(TEXT("native_pcg_spawn_actor_generation"), NativeSpawnedActorCount > 0);
	Payload->SetStringField(TEXT("note"), TEXT("generated_count reports PCG point-output count when available. native_spawned_actor_count reports actors owned by PCG managed resources. visual_output_count reports bridge-created repro tree actors from pcg_create_visual_repro_output."));
	if (!Forest.bFound)
	{
		Payload->SetStringField(TEXT("error"), TEXT("No forest actor found for inspection, or PCG generation is unavailable."));
	}
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, !Forest.bFound);
}
