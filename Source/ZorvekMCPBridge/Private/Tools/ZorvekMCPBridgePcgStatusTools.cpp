#include "Tools/ZorvekMCPBridgePcgStatusTools.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Pcg/ZorvekMCPBridgePcgProbe.h"
#include "Pcg/ZorvekMCPBridgePcgSplineBounds.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeDiscoveryTools.h"
#include "World/ZorvekMCPBridgeActorReadback.h"

namespace
{
	using ZorvekMCPBridgeDiscoveryTools::ToJsonStringArray;

	// Why each PCG capability the manifest marks false is out of reach, in words an agent can pass on.
	struct FPcgStatusBoundary
	{
		const TCHAR* CapabilityId;
		const TCHAR* Reason;
	};

	const FPcgStatusBoundary PcgStatusBoundaries[] = {
		{TEXT("pcg_spline_road_sampling"), TEXT("Roads are straight strips of road actor Blueprints; a spline only marks rectangular bounds and is never sampled along its curve.")},
		{TEXT("pcg_arbitrary_road_network_editing"), TEXT("Road layouts are generated whole as strips and grids; single roads or junctions of a network cannot be edited, moved or reconnected.")},
		{TEXT("pcg_arbitrary_volume_bounds_controls"), TEXT("Forest bounds are the box of the forest actor; arbitrary volume shapes cannot be set.")},
		{TEXT("pcg_true_multi_class_spawn"), TEXT("One spawner places one class; several classes need one spawner or actor set per class, not a weighted multi-class spawn.")},
		{TEXT("pcg_graph_editing"), TEXT("The bridge builds its own forest graph; it does not add, remove or rewire nodes of arbitrary PCG graphs.")},
	};

	FString FindPcgStatusBoundaryReason(const FString& CapabilityId)
	{
		for (const FPcgStatusBoundary& Boundary : PcgStatusBoundaries)
		{
			if (CapabilityId == Boundary.CapabilityId)
			{
				return Boundary.Reason;
			}
		}
		return TEXT("Not supported by this bridge.");
	}

	bool IsPcgStatusToolName(const FString& Name)
	{
		return Name.StartsWith(TEXT("pcg_"), ESearchCase::CaseSensitive) || Name == TEXT("blueprint_create_road_actor")
			|| Name == TEXT("blueprint_create_intersection_actor") || Name == TEXT("blueprint_create_skyscraper_actor");
	}

	// What a level change by a PCG tool needs and leaves behind.
	TSharedPtr<FJsonObject> MakePcgLevelChangesObject()
	{
		TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
		Object->SetBoolField(TEXT("requires_allow_current_level"), true);
		Object->SetArrayField(TEXT("tags"), ToJsonStringArray({ZorvekMCPBridgeActorReadback::BridgeTag, ZorvekMCPBridgeActorReadback::ReproTag, ZorvekMCPBridgeActorReadback::VisualPcgTag}));
		Object->SetStringField(TEXT("cleanup_tool"), TEXT("editor_cleanup_repro_actors"));
		return Object;
	}

	// One tool of the road and city side and what it does; whether it answers follows the tool
	// table, so the report stays true when a row loses or gains its handler.
	struct FPcgRoadWorkflow
	{
		const TCHAR* ToolName;
		const TCHAR* Purpose;
	};

	bool IsPcgRoadToolAnswering(const FPcgRoadWorkflow& Workflow)
	{
		const FZorvekMCPBridgeToolDefinition* Row = ZorvekMCPBridgeTools::FindTool(Workflow.ToolName);
		return Row && Row->Handler;
	}

	TArray<TSharedPtr<FJsonValue>> MakePcgRoadWorkflowArray(std::initializer_list<FPcgRoadWorkflow> Workflows)
	{
		TArray<TSharedPtr<FJsonValue>> Values;
		for (const FPcgRoadWorkflow& Workflow : Workflows)
		{
			TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
			Object->SetStringField(TEXT("tool"), Workflow.ToolName);
			Object->SetStringField(TEXT("purpose"), Workflow.Purpose);
			Object->SetBoolField(TEXT("available_in_this_build"), IsPcgRoadToolAnswering(Workflow));
			Values.Add(MakeShared<FJsonValueObject>(Object));
		}
		return Values;
	}

	TSharedPtr<FJsonObject> MakePcgSplineBoundsLimits()
	{
		namespace SplineBounds = ZorvekMCPBridgePcgSplineBounds;
		TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
		Object->SetStringField(TEXT("shape"), TEXT("closed_rectangle"));
		Object->SetNumberField(TEXT("point_count"), SplineBounds::RectanglePointCount);
		Object->SetStringField(TEXT("point_type"), TEXT("Linear"));
		Object->SetNumberField(TEXT("default_length"), SplineBounds::DefaultLength);
		Object->SetNumberField(TEXT("default_width"), SplineBounds::DefaultWidth);
		Object->SetNumberField(TEXT("min_size"), SplineBounds::MinSize);
		Object->SetNumberField(TEXT("max_size"), SplineBounds::MaxSize);
		return Object;
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgStatusTools::HandleGetStatus(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("pcg_get_status"));
	}
	const FZorvekMCPBridgePcgStatus Status = ZorvekMCPBridgePcgProbe::Probe(Context.EditorPort->GetWorld());
	const bool bAvailable = Status.IsAvailable();

	// The PCG part of the capability manifest, so the two never disagree.
	TSharedPtr<FJsonObject> FeatureMatrix = MakeShared<FJsonObject>();
	TArray<TSharedPtr<FJsonValue>> KnownUnsupported;
	for (const ZorvekMCPBridgeDiscoveryTools::FCapability& Capability : ZorvekMCPBridgeDiscoveryTools::GetCapabilities())
	{
		const FString Id = Capability.Id;
		if (!Id.StartsWith(TEXT("pcg_"), ESearchCase::CaseSensitive))
		{
			continue;
		}
		FeatureMatrix->SetBoolField(Id, Capability.bSupported);
		if (!Capability.bSupported)
		{
			TSharedPtr<FJsonObject> Boundary = MakeShared<FJsonObject>();
			Boundary->SetStringField(TEXT("capability"), Id);
			Boundary->SetStringField(TEXT("reason"), FindPcgStatusBoundaryReason(Id));
			KnownUnsupported.Add(MakeShared<FJsonValueObject>(Boundary));
		}
	}
	TArray<FString> Tools;
	for (const FZorvekMCPBridgeToolDefinition& Tool : ZorvekMCPBridgeTools::GetToolTable())
	{
		if (Tool.bListed && IsPcgStatusToolName(Tool.Name))
		{
			Tools.Add(Tool.Name);
		}
	}

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetBoolField(TEXT("pcg_available"), bAvailable);
	Payload->SetStringField(TEXT("status"), bAvailable ? TEXT("pcg_available") : TEXT("pcg_unavailable"));
	Payload->SetObjectField(TEXT("pcg_status"), ZorvekMCPBridgePcgProbe::MakeStatusObject(Status));
	Payload->SetObjectField(TEXT("feature_matrix"), FeatureMatrix);
	Payload->SetArrayField(TEXT("known_unsupported"), KnownUnsupported);
	Payload->SetArrayField(TEXT("tools"), ToJsonStringArray(Tools));
	Payload->SetObjectField(TEXT("level_changes"), MakePcgLevelChangesObject());
	if (bAvailable)
	{
		Payload->SetArrayField(TEXT("next_steps"), ToJsonStringArray({
			TEXT("Call pcg_get_road_capabilities before road or city work."),
			TEXT("Pass AllowCurrentLevel=true to every PCG tool that places or changes actors in the current editor world."),
			TEXT("Remove what the PCG tools placed with editor_cleanup_repro_actors."),
		}));
	}
	else
	{
		// The same three steps as the unavailable result of every other PCG tool.
		Payload->SetArrayField(TEXT("next_steps"), ToJsonStringArray({
			TEXT("Enable the PCG plugin for the project if PCG generation is desired."),
			TEXT("Restart Unreal so PCG classes/modules are available."),
			TEXT("Run pcg_get_status again before mutating the editor world."),
		}));
		Payload->SetStringField(TEXT("note"), TEXT("PCG cannot be used in this project: every other pcg_* tool answers status pcg_unavailable and changes nothing."));
	}
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgStatusTools::HandleGetRoadCapabilities(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("pcg_get_road_capabilities"));
	}
	const IZorvekMCPBridgeWorld& World = Context.EditorPort->GetWorld();
	const FZorvekMCPBridgePcgStatus Status = ZorvekMCPBridgePcgProbe::Probe(World);
	if (!Status.IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, TEXT("pcg_get_road_capabilities"), Arguments, TEXT("get_road_capabilities"));
	}

	TArray<TSharedPtr<FJsonValue>> Unsupported;
	for (const TCHAR* Id : {TEXT("pcg_spline_road_sampling"), TEXT("pcg_arbitrary_road_network_editing")})
	{
		TSharedPtr<FJsonObject> Boundary = MakeShared<FJsonObject>();
		Boundary->SetStringField(TEXT("capability"), Id);
		Boundary->SetStringField(TEXT("reason"), FindPcgStatusBoundaryReason(Id));
		Unsupported.Add(MakeShared<FJsonValueObject>(Boundary));
	}

	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetStringField(TEXT("status"), TEXT("pcg_road_capabilities"));
	Payload->SetObjectField(TEXT("pcg_status"), ZorvekMCPBridgePcgProbe::MakeStatusObject(Status));
	Payload->SetStringField(TEXT("road_model"), TEXT("Roads and cities are straight strips and grids of road, intersection and skyscraper actor Blueprints built from engine primitive meshes and placed in the current editor world with repro tags. They are not sampled from splines and form no editable road network."));
	Payload->SetArrayField(TEXT("workflows"), MakePcgRoadWorkflowArray({
		{TEXT("pcg_create_spline_bounds_actor"), TEXT("Place an actor whose closed four-point spline marks rectangular road bounds.")},
		{TEXT("pcg_inspect_spline_bounds_actor"), TEXT("Read a spline bounds actor's points, spline length, rectangle and bounds.")},
		{TEXT("pcg_set_spline_bounds_actor"), TEXT("Change the length or width of a spline bounds actor's rectangle.")},
		{TEXT("pcg_run_road_recipe"), TEXT("Place a straight strip of road segments from an origin along a direction.")},
		{TEXT("pcg_run_spline_road_proof"), TEXT("Place a straight road strip inside spline rectangle bounds; the spline is not sampled.")},
		{TEXT("pcg_run_city_layout_recipe"), TEXT("Place a grid city: roads between blocks, intersections at crossings, skyscrapers in the blocks.")},
		{TEXT("pcg_update_city_layout_recipe"), TEXT("Make a grid city bigger, denser or taller in place, without duplicating actors.")},
		{TEXT("pcg_multiclass_spawn_proof"), TEXT("Place one actor set per class at a generated forest's points and report that true multi-class spawning is unsupported.")},
	}));
	Payload->SetArrayField(TEXT("piece_generators"), MakePcgRoadWorkflowArray({
		{TEXT("blueprint_create_road_actor"), TEXT("Create a road segment actor Blueprint from engine primitive meshes.")},
		{TEXT("blueprint_create_intersection_actor"), TEXT("Create a road intersection actor Blueprint from engine primitive meshes.")},
		{TEXT("blueprint_create_skyscraper_actor"), TEXT("Create a skyscraper actor Blueprint from engine primitive meshes.")},
	}));
	Payload->SetObjectField(TEXT("spline_bounds"), MakePcgSplineBoundsLimits());
	Payload->SetArrayField(TEXT("unsupported"), Unsupported);
	Payload->SetObjectField(TEXT("level_changes"), MakePcgLevelChangesObject());
	Payload->SetArrayField(TEXT("next_steps"), ToJsonStringArray({
		TEXT("Use only the workflows with available_in_this_build true."),
		TEXT("Pass AllowCurrentLevel=true to every tool that places or changes actors."),
		TEXT("Remove what the road and city tools placed with editor_cleanup_repro_actors."),
	}));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}
