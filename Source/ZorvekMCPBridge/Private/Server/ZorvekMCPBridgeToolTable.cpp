// The declarative tool table: one row per tool, in the order "tools/list" shows them. The same
// rows are the dispatch chain of "tools/call". A row without a handler answers that the tool is
// not available in this build yet; attach the handler to the row when the tool is built.
#include "Server/ZorvekMCPBridgeToolCatalogue.h"

#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeBlueprintCompositeTools.h"
#include "Tools/ZorvekMCPBridgeBlueprintReadTools.h"
#include "Tools/ZorvekMCPBridgeBlueprintSearchTool.h"
#include "Tools/ZorvekMCPBridgeBlueprintMemberTools.h"
#include "Tools/ZorvekMCPBridgeBlueprintNodeTools.h"
#include "Tools/ZorvekMCPBridgeDataAssetTools.h"
#include "Tools/ZorvekMCPBridgeDiscoveryTools.h"
#include "Tools/ZorvekMCPBridgeEditorWorldTools.h"
#include "Tools/ZorvekMCPBridgeMaterialTools.h"
#include "Tools/ZorvekMCPBridgePcgCityTools.h"
#include "Tools/ZorvekMCPBridgePcgMulticlassTools.h"
#include "Tools/ZorvekMCPBridgePcgStatusTools.h"
#include "Tools/ZorvekMCPBridgePcgForestTools.h"
#include "Tools/ZorvekMCPBridgePcgTools.h"
#include "Tools/ZorvekMCPBridgePrimitiveActorTools.h"
#include "Tools/ZorvekMCPBridgeNodeSpawnerTools.h"
#include "Tools/ZorvekMCPBridgeRecipeTool.h"
#include "Tools/ZorvekMCPBridgeReproAssetTools.h"
#include "Tools/ZorvekMCPBridgeVessaTools.h"
#include "Tools/ZorvekMCPBridgeViewportCaptureTool.h"

namespace
{
	FZorvekMCPBridgeToolParameter RequiredText(const TCHAR* Name, const TCHAR* Description)
	{
		return {Name, Description, EZorvekMCPBridgeParameterForm::Text, true};
	}

	FZorvekMCPBridgeToolParameter OptionalText(const TCHAR* Name, const TCHAR* Description)
	{
		return {Name, Description, EZorvekMCPBridgeParameterForm::Text, false};
	}

	// Maps and arrays are declared as objects with additional properties.
	FZorvekMCPBridgeToolParameter RequiredObject(const TCHAR* Name, const TCHAR* Description)
	{
		return {Name, Description, EZorvekMCPBridgeParameterForm::Structured, true};
	}

	FZorvekMCPBridgeToolParameter OptionalObject(const TCHAR* Name, const TCHAR* Description)
	{
		return {Name, Description, EZorvekMCPBridgeParameterForm::Structured, false};
	}

	FZorvekMCPBridgeToolDefinition ToolRow(const TCHAR* Name, const TCHAR* Description, TArray<FZorvekMCPBridgeToolParameter> Parameters, FZorvekMCPBridgeToolHandler Handler = nullptr)
	{
		return {Name, Description, MoveTemp(Parameters), Handler, true};
	}

	// A name the dispatch chain answers but "tools/list" does not show.
	FZorvekMCPBridgeToolDefinition UnlistedAlias(const TCHAR* Name, const FZorvekMCPBridgeToolDefinition& Target)
	{
		return {Name, Target.Description, Target.Parameters, Target.Handler, false};
	}

	const TCHAR* const BlueprintNameOrPathDescription = TEXT("Blueprint asset name, keyword, or full asset path.");
	const TCHAR* const GraphNameToEditDescription = TEXT("Graph name to edit. Defaults to EventGraph.");
	const TCHAR* const MaterialNameOrPathDescription = TEXT("Material asset name, keyword, or full asset path.");
	const TCHAR* const ContentFolderPathDescription = TEXT("Content folder path, for example /Game/MyFolder.");
	const TCHAR* const InterfaceNameOrPathDescription = TEXT("Blueprint Interface asset path/name or generated interface class path.");
	const TCHAR* const EditorActorNameOrLabelDescription = TEXT("Actor name, label, or path from editor_read_level_actors/editor_place_actor.");
	const TCHAR* const VessaExtensionIdDescription = TEXT("Extension id from Vessa discovery.");

	// The nine flat transform arguments, in the wording of each tool.
	TArray<FZorvekMCPBridgeToolParameter> PlacementTransformParameters()
	{
		return {
			OptionalText(TEXT("LocationX"), TEXT("Optional actor X location. Defaults to 0.")),
			OptionalText(TEXT("LocationY"), TEXT("Optional actor Y location. Defaults to 0.")),
			OptionalText(TEXT("LocationZ"), TEXT("Optional actor Z location. Defaults to 0.")),
			OptionalText(TEXT("RotationPitch"), TEXT("Optional actor pitch rotation. Defaults to 0.")),
			OptionalText(TEXT("RotationYaw"), TEXT("Optional actor yaw rotation. Defaults to 0.")),
			OptionalText(TEXT("RotationRoll"), TEXT("Optional actor roll rotation. Defaults to 0.")),
			OptionalText(TEXT("ScaleX"), TEXT("Optional actor X scale. Defaults to 1.")),
			OptionalText(TEXT("ScaleY"), TEXT("Optional actor Y scale. Defaults to 1.")),
			OptionalText(TEXT("ScaleZ"), TEXT("Optional actor Z scale. Defaults to 1.")),
		};
	}

	TArray<FZorvekMCPBridgeToolParameter> ActorTransformParameters()
	{
		return {
			OptionalText(TEXT("LocationX"), TEXT("Optional actor X location.")),
			OptionalText(TEXT("LocationY"), TEXT("Optional actor Y location.")),
			OptionalText(TEXT("LocationZ"), TEXT("Optional actor Z location.")),
			OptionalText(TEXT("RotationPitch"), TEXT("Optional actor pitch rotation.")),
			OptionalText(TEXT("RotationYaw"), TEXT("Optional actor yaw rotation.")),
			OptionalText(TEXT("RotationRoll"), TEXT("Optional actor roll rotation.")),
			OptionalText(TEXT("ScaleX"), TEXT("Optional actor X scale.")),
			OptionalText(TEXT("ScaleY"), TEXT("Optional actor Y scale.")),
			OptionalText(TEXT("ScaleZ"), TEXT("Optional actor Z scale.")),
		};
	}

	TArray<FZorvekMCPBridgeToolParameter> ComponentTransformParameters()
	{
		return {
			OptionalText(TEXT("LocationX"), TEXT("Optional relative component X location.")),
			OptionalText(TEXT("LocationY"), TEXT("Optional relative component Y location.")),
			OptionalText(TEXT("LocationZ"), TEXT("Optional relative component Z location.")),
			OptionalText(TEXT("RotationPitch"), TEXT("Optional relative component pitch rotation.")),
			OptionalText(TEXT("RotationYaw"), TEXT("Optional relative component yaw rotation.")),
			OptionalText(TEXT("RotationRoll"), TEXT("Optional relative component roll rotation.")),
			OptionalText(TEXT("ScaleX"), TEXT("Optional relative component X scale.")),
			OptionalText(TEXT("ScaleY"), TEXT("Optional relative component Y scale.")),
			OptionalText(TEXT("ScaleZ"), TEXT("Optional relative component Z scale.")),
		};
	}

	template <typename... ListTypes>
	TArray<FZorvekMCPBridgeToolParameter> Concat(const ListTypes&... Lists)
	{
		TArray<FZorvekMCPBridgeToolParameter> Result;
		(Result.Append(Lists), ...);
		return Result;
	}

	TArray<FZorvekMCPBridgeToolDefinition> BuildToolTable()
	{
		using namespace ZorvekMCPBridgeDiscoveryTools;
		const FZorvekMCPBridgeToolDefinition GetStatus = ToolRow(TEXT("unreal_get_status"), TEXT("Return Zorvek MCP Bridge and Unreal Editor status."), {}, &HandleGetStatus);

		return {
			// Discovery.
			GetStatus,
			UnlistedAlias(TEXT("vessa_get_status"), GetStatus),
			ToolRow(TEXT("unreal_get_capabilities"), TEXT("Return the authoritative Zorvek MCP Bridge capability matrix and recommended discovery workflow."), {}, &HandleGetCapabilities),
			ToolRow(TEXT("unreal_recommend_tools"), TEXT("Route a task to the most relevant Zorvek MCP tools and known unsupported boundaries without hiding the full tool surface."), {
				RequiredText(TEXT("Task"), TEXT("Natural-language task or user request to route, for example create a Blueprint actor that changes a material parameter.")),
				OptionalText(TEXT("Domain"), TEXT("Optional domain hint: blueprint, material, asset_inspection, project_search, onboarding, vessa, or broad.")),
				OptionalText(TEXT("Intent"), TEXT("Optional intent hint: search, inspect, author, connect, compile, onboard, or unsupported_check.")),
				OptionalText(TEXT("AssetType"), TEXT("Optional Unreal asset type hint, for example Blueprint, Material, StateTree, CameraRigAsset.")),
			}, &HandleRecommendTools),

			// Vessa extensions.
			ToolRow(TEXT("vessa_list_extensions"), TEXT("List standalone Vessa extensions discovered by the Zorvek MCP Bridge."), {
				OptionalText(TEXT("limit"), TEXT("Maximum extensions to return. Defaults to 100.")),
			}, &ZorvekMCPBridgeVessaTools::HandleListExtensions),
			ToolRow(TEXT("vessa_search_extensions"), TEXT("Search standalone Vessa extensions and capabilities."), {
				RequiredText(TEXT("search"), TEXT("Search text matched against extension names, descriptions, actions, and queries.")),
				OptionalText(TEXT("limit"), TEXT("Maximum matches to return. Defaults to 25.")),
			}, &ZorvekMCPBridgeVessaTools::HandleSearchExtensions),
			ToolRow(TEXT("vessa_get_extension_details"), TEXT("Return full metadata, actions, and queries for a standalone Vessa extension."), {
				RequiredText(TEXT("extension_id"), TEXT("Extension id from vessa_list_extensions or vessa_search_extensions.")),
			}, &ZorvekMCPBridgeVessaTools::HandleGetExtensionDetails),
			ToolRow(TEXT("vessa_call_query"), TEXT("Execute a query on a standalone Vessa extension and return JSON results."), {
				RequiredText(TEXT("extension_id"), VessaExtensionIdDescription),
				RequiredText(TEXT("query_name"), TEXT("Query function name to execute.")),
				OptionalObject(TEXT("parameters"), TEXT("Query parameters keyed by parameter name.")),
			}, &ZorvekMCPBridgeVessaTools::HandleCallQuery),
			ToolRow(TEXT("vessa_call_action"), TEXT("Execute an action on a standalone Vessa extension and return action status JSON."), {
				RequiredText(TEXT("extension_id"), VessaExtensionIdDescription),
				RequiredText(TEXT("action_name"), TEXT("Action function name to execute.")),
				OptionalObject(TEXT("parameters"), TEXT("Action parameters keyed by parameter name.")),
			}, &ZorvekMCPBridgeVessaTools::HandleCallAction),

			// Assets.
			ToolRow(TEXT("unreal_resolve_asset"), TEXT("Resolve an asset name or partial path to candidate Unreal asset paths."), {
				RequiredText(TEXT("name_or_path"), TEXT("Asset name, keyword, or full Unreal asset path.")),
				OptionalText(TEXT("type"), TEXT("Asset type filter such as Blueprint, Material, Any. Defaults to Blueprint.")),
				OptionalText(TEXT("limit"), TEXT("Maximum candidates to return. Defaults to 10.")),
			}, &ZorvekMCPBridgeAssetTools::HandleResolveAsset),
			ToolRow(TEXT("unreal_inspect_asset"), TEXT("Read-only inspection for any UObject asset: identity, class, package, editable/public properties, object references, and partial failures."), {
				RequiredText(TEXT("AssetNameOrPath"), TEXT("Asset name, keyword, full package path, or full object path.")),
				OptionalText(TEXT("Type"), TEXT("Optional asset type filter for name searches. Defaults to Any.")),
				OptionalText(TEXT("PropertyLimit"), TEXT("Maximum inspectable properties to return. Defaults to 200. Use 0 for no explicit limit.")),
			}, &ZorvekMCPBridgeAssetTools::HandleInspectAsset),

			// Data Assets.
			ToolRow(TEXT("data_asset_find_classes"), TEXT("Discover native and Blueprint-generated Data Asset / Primary Data Asset classes for real Data Asset instance authoring. Read-only; does not create Blueprint child classes."), {
				OptionalText(TEXT("Query"), TEXT("Optional text matched against class names and class paths.")),
				OptionalObject(TEXT("PackagePaths"), TEXT("Optional array of content folders searched for Blueprint-generated Data Asset classes. Defaults to [\"/Game\"].")),
				OptionalText(TEXT("IncludeNative"), TEXT("Optional bool. Include native Data Asset classes. Defaults to true.")),
				OptionalText(TEXT("IncludeBlueprint"), TEXT("Optional bool. Include Blueprint-generated Data Asset classes. Defaults to true.")),
				OptionalText(TEXT("OnlyInstantiable"), TEXT("Optional bool. Skip abstract and deprecated classes. Defaults to true.")),
				OptionalText(TEXT("Limit"), TEXT("Maximum classes to return. Defaults to 100.")),
			}, &ZorvekMCPBridgeDataAssetTools::HandleFindClasses),
			ToolRow(TEXT("data_asset_create"), TEXT("Create a real Data Asset UObject instance from an instantiable Data Asset class. This does not create a Blueprint Class child and does not set custom properties yet."), {
				RequiredText(TEXT("ClassPath"), TEXT("Data Asset class path from data_asset_find_classes, such as /Script/Engine.PrimaryDataAsset or /Game/.../PDA_Ability.PDA_Ability_C.")),
				RequiredText(TEXT("PackagePath"), TEXT("Destination package folder, for example /Game/Corvale/DataAssets.")),
				RequiredText(TEXT("AssetName"), TEXT("New Data Asset name.")),
				OptionalText(TEXT("Save"), TEXT("Optional bool. Save the new asset's package. Defaults to true.")),
			}, &ZorvekMCPBridgeDataAssetTools::HandleCreate),
			ToolRow(TEXT("data_asset_set_property"), TEXT("Set one editable reflected property on a real Data Asset instance and save it. Supports top-level fields and nested struct paths; array/map indexing is not supported yet."), {
				RequiredText(TEXT("AssetNameOrPath"), TEXT("Data Asset name, keyword, full package path, or full object path.")),
				RequiredText(TEXT("PropertyName"), TEXT("Editable property name to set. Supports top-level names and nested struct paths such as ItemSummary.Name.")),
				RequiredText(TEXT("Value"), TEXT("JSON value to import into the reflected property. Array/map indexing is not supported yet.")),
				OptionalText(TEXT("Save"), TEXT("Optional bool. Save the asset's package after the change. Defaults to true.")),
			}, &ZorvekMCPBridgeDataAssetTools::HandleSetProperty),
			ToolRow(TEXT("data_asset_create_batch"), TEXT("Create multiple real Data Asset instances and optionally populate supported top-level or nested struct properties. Stops on first failure unless ContinueOnError is true."), {
				RequiredObject(TEXT("Items"), TEXT("Array of item objects. Each item requires AssetName and may include ClassPath, PackagePath, and Properties object keyed by property path.")),
				OptionalText(TEXT("DefaultClassPath"), TEXT("Optional Data Asset class path for items without ClassPath.")),
				OptionalText(TEXT("DefaultPackagePath"), TEXT("Optional destination package folder for items without PackagePath.")),
				OptionalText(TEXT("Save"), TEXT("Optional bool. Save each created asset's package. Defaults to true.")),
				OptionalText(TEXT("ContinueOnError"), TEXT("Optional bool. When true, go on with the next item after a failed one. Defaults to false.")),
			}, &ZorvekMCPBridgeDataAssetTools::HandleCreateBatch),

			// Editor world.
			ToolRow(TEXT("editor_get_world_status"), TEXT("Return current Unreal Editor world status, actor counts, selected actors, and editor placement guardrail state."), {}, &ZorvekMCPBridgeEditorWorldTools::HandleGetWorldStatus),
			ToolRow(TEXT("editor_place_actor"), TEXT("Place a Blueprint or native actor into the current editor world with explicit opt-in and Zorvek repro tags."), Concat(
				TArray<FZorvekMCPBridgeToolParameter>{
					OptionalText(TEXT("BlueprintNameOrPath"), TEXT("Blueprint asset path/name to place. Use this for Blueprint actor assets.")),
					OptionalText(TEXT("ActorClassPath"), TEXT("Native actor class path to place when BlueprintNameOrPath is empty.")),
					OptionalText(TEXT("ActorLabel"), TEXT("Optional editor actor label. Defaults to asset/class name.")),
					OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true for Slice 55 because placement mutates the current editor world.")),
				},
				PlacementTransformParameters()), &ZorvekMCPBridgeEditorWorldTools::HandlePlaceActor),
			ToolRow(TEXT("editor_set_actor_transform"), TEXT("Set transform fields on an existing editor actor by name, label, or path and return updated bounds/readback."), Concat(
				TArray<FZorvekMCPBridgeToolParameter>{RequiredText(TEXT("ActorNameOrLabel"), EditorActorNameOrLabelDescription)},
				ActorTransformParameters()), &ZorvekMCPBridgeEditorWorldTools::HandleSetActorTransform),
			ToolRow(TEXT("editor_set_component_transform"), TEXT("Set relative transform fields on an editor actor component and return updated actor/component bounds for visual adjustment loops."), Concat(
				TArray<FZorvekMCPBridgeToolParameter>{
					RequiredText(TEXT("ActorNameOrLabel"), EditorActorNameOrLabelDescription),
					RequiredText(TEXT("ComponentName"), TEXT("Actor component name to update, for example Canopy.")),
				},
				ComponentTransformParameters()), &ZorvekMCPBridgeEditorWorldTools::HandleSetComponentTransform),
			ToolRow(TEXT("editor_read_level_actors"), TEXT("Read editor-world actors with labels, paths, classes, transforms, bounds, tags, and selection state."), {
				OptionalText(TEXT("Filter"), TEXT("Optional substring filter matched against actor name, label, path, class, or tags.")),
				OptionalText(TEXT("ReproOnly"), TEXT("Optional bool. When true, only actors tagged ZorvekRepro/ZorvekMCPBridge are returned.")),
				OptionalText(TEXT("Limit"), TEXT("Maximum actors to return. Defaults to 100.")),
			}, &ZorvekMCPBridgeEditorWorldTools::HandleReadLevelActors),
			ToolRow(TEXT("editor_select_actor"), TEXT("Select an editor actor by name, label, or path and return selected actor readback."), {
				RequiredText(TEXT("ActorNameOrLabel"), TEXT("Actor name, label, or path to select.")),
				OptionalText(TEXT("ClearSelection"), TEXT("Optional bool. Defaults to true.")),
			}, &ZorvekMCPBridgeEditorWorldTools::HandleSelectActor),
			ToolRow(TEXT("editor_cleanup_repro_actors"), TEXT("Delete only Zorvek repro-tagged editor actors, optionally filtered, for deterministic cleanup after placement tests."), {
				OptionalText(TEXT("Filter"), TEXT("Optional substring filter. Only repro-tagged actors matching this filter are deleted.")),
				OptionalText(TEXT("DryRun"), TEXT("Optional bool. When true, report matching repro actors without deleting. Defaults to false.")),
			}, &ZorvekMCPBridgeEditorWorldTools::HandleCleanupReproActors),
			ToolRow(TEXT("editor_capture_viewport"), TEXT("Capture the active editor viewport to PNG and return screenshot path plus target actor/component bounds for visual QA."), {
				OptionalText(TEXT("ActorNameOrLabel"), TEXT("Optional actor name, label, or path to focus/capture. Defaults to selected actors.")),
				OptionalText(TEXT("Focus"), TEXT("Optional bool. When true, focuses the active editor viewport on target actors before capture. Defaults to true.")),
				OptionalText(TEXT("FilenamePrefix"), TEXT("Optional PNG filename prefix. Defaults to ZorvekViewport.")),
			}, &ZorvekMCPBridgeViewportCaptureTool::HandleCaptureViewport),

			// Road, intersection and skyscraper generators.
			ToolRow(TEXT("blueprint_create_road_actor"), TEXT("Create a road segment actor Blueprint from engine primitive meshes. The road runs along X with its origin at its centre on the ground: a surface slab, lane markings between lanes and raised sidewalks; the answer gives the footprint (length, width, height in cm) for tiling roads and intersections."), {
				RequiredText(TEXT("PackagePath"), ContentFolderPathDescription),
				RequiredText(TEXT("AssetName"), TEXT("New road Blueprint asset name.")),
				OptionalText(TEXT("Length"), TEXT("Road length along X in cm, 100 to 1000000. Defaults to 2000.")),
				OptionalText(TEXT("LaneCount"), TEXT("Number of lanes, 1 to 8. Defaults to 2.")),
				OptionalText(TEXT("LaneWidth"), TEXT("Lane width in cm, 100 to 1000. Defaults to 350.")),
				OptionalText(TEXT("SidewalkWidth"), TEXT("Sidewalk width on each side in cm, 0 (none) to 1000. Defaults to 200.")),
				OptionalText(TEXT("SurfaceMaterialPath"), TEXT("Optional Material or MaterialInstance for the road surface. Defaults to the basic shape material.")),
				OptionalText(TEXT("MarkingMaterialPath"), TEXT("Optional Material or MaterialInstance for the lane markings. Defaults to the basic shape material.")),
				OptionalText(TEXT("SidewalkMaterialPath"), TEXT("Optional Material or MaterialInstance for the sidewalks. Defaults to the basic shape material.")),
				OptionalText(TEXT("Compile"), TEXT("Optional bool. Defaults to true.")),
			}, &ZorvekMCPBridgePrimitiveActorTools::HandleCreateRoadActor),
			ToolRow(TEXT("blueprint_create_intersection_actor"), TEXT("Create a road intersection actor Blueprint from engine primitive meshes. The square piece matches a road of the same LaneCount, LaneWidth and SidewalkWidth: a surface slab, sidewalk corners and optional zebra crossings; the answer gives its footprint in cm."), {
				RequiredText(TEXT("PackagePath"), ContentFolderPathDescription),
				RequiredText(TEXT("AssetName"), TEXT("New intersection Blueprint asset name.")),
				OptionalText(TEXT("LaneCount"), TEXT("Number of lanes of the roads it joins, 1 to 8. Defaults to 2.")),
				OptionalText(TEXT("LaneWidth"), TEXT("Lane width in cm, 100 to 1000. Defaults to 350.")),
				OptionalText(TEXT("SidewalkWidth"), TEXT("Sidewalk width in cm, 0 (none) to 1000; the corners are this square. Defaults to 200.")),
				OptionalText(TEXT("Crossings"), TEXT("Optional bool: zebra crossings on the four arms (only with sidewalks). Defaults to true.")),
				OptionalText(TEXT("SurfaceMaterialPath"), TEXT("Optional Material or MaterialInstance for the road surface. Defaults to the basic shape material.")),
				OptionalText(TEXT("MarkingMaterialPath"), TEXT("Optional Material or MaterialInstance for the crossing stripes. Defaults to the basic shape material.")),
				OptionalText(TEXT("SidewalkMaterialPath"), TEXT("Optional Material or MaterialInstance for the sidewalk corners. Defaults to the basic shape material.")),
				OptionalText(TEXT("Compile"), TEXT("Optional bool. Defaults to true.")),
			}, &ZorvekMCPBridgePrimitiveActorTools::HandleCreateIntersectionActor),
			ToolRow(TEXT("blueprint_create_skyscraper_actor"), TEXT("Create a skyscraper actor Blueprint from engine primitive meshes. A tower standing on its origin with window bands and a roof block; the answer gives its footprint in cm."), {
				RequiredText(TEXT("PackagePath"), ContentFolderPathDescription),
				RequiredText(TEXT("AssetName"), TEXT("New skyscraper Blueprint asset name.")),
				OptionalText(TEXT("Floors"), TEXT("Number of floors, 1 to 200. Defaults to 10.")),
				OptionalText(TEXT("FloorHeight"), TEXT("Floor height in cm, 200 to 1000. Defaults to 350.")),
				OptionalText(TEXT("Width"), TEXT("Tower width along X in cm, 100 to 100000. Defaults to 2000.")),
				OptionalText(TEXT("Depth"), TEXT("Tower depth along Y in cm, 100 to 100000. Defaults to 2000.")),
				OptionalText(TEXT("WindowBands"), TEXT("Optional bool: a window band per floor (one per few floors above 126 floors), 10 cm proud of the facade. Defaults to true.")),
				OptionalText(TEXT("Roof"), TEXT("Optional bool: a roof block on top. Defaults to true.")),
				OptionalText(TEXT("FacadeMaterialPath"), TEXT("Optional Material or MaterialInstance for the tower. Defaults to the basic shape material.")),
				OptionalText(TEXT("WindowMaterialPath"), TEXT("Optional Material or MaterialInstance for the window bands. Defaults to the basic shape material.")),
				OptionalText(TEXT("RoofMaterialPath"), TEXT("Optional Material or MaterialInstance for the roof block. Defaults to the basic shape material.")),
				OptionalText(TEXT("Compile"), TEXT("Optional bool. Defaults to true.")),
			}, &ZorvekMCPBridgePrimitiveActorTools::HandleCreateSkyscraperActor),

			// PCG.
			ToolRow(TEXT("pcg_get_status"), TEXT("Return PCG plugin availability and the bridge's PCG capability summary."), {}, &ZorvekMCPBridgePcgStatusTools::HandleGetStatus),
			ToolRow(TEXT("pcg_get_road_capabilities"), TEXT("Return the supported PCG road and city workflows and their known limits."), {}, &ZorvekMCPBridgePcgStatusTools::HandleGetRoadCapabilities),
			ToolRow(TEXT("pcg_create_spline_bounds_actor"), TEXT("Create a spline bounds actor that limits PCG road or forest generation."), {
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this places an actor in the current editor world.")),
				OptionalText(TEXT("ActorLabel"), TEXT("Optional editor actor label. Defaults to ZorvekPCGSplineBounds, numbered when taken.")),
				OptionalText(TEXT("Length"), TEXT("Optional rectangle size along X in centimetres, 100 to 1000000. Defaults to 4000.")),
				OptionalText(TEXT("Width"), TEXT("Optional rectangle size along Y in centimetres, 100 to 1000000. Defaults to 2000.")),
				OptionalText(TEXT("LocationX"), TEXT("Optional rectangle centre X. Defaults to 0.")),
				OptionalText(TEXT("LocationY"), TEXT("Optional rectangle centre Y. Defaults to 0.")),
				OptionalText(TEXT("LocationZ"), TEXT("Optional rectangle centre Z. Defaults to 0.")),
				OptionalText(TEXT("RotationYaw"), TEXT("Optional rectangle yaw in degrees. Defaults to 0.")),
			}, &ZorvekMCPBridgePcgCityTools::HandleCreateSplineBoundsActor),
			ToolRow(TEXT("pcg_inspect_spline_bounds_actor"), TEXT("Read the points and bounds of a PCG spline bounds actor."), {
				RequiredText(TEXT("ActorNameOrLabel"), TEXT("Spline bounds actor name, label, or path from pcg_create_spline_bounds_actor.")),
			}, &ZorvekMCPBridgePcgCityTools::HandleInspectSplineBoundsActor),
			ToolRow(TEXT("pcg_set_spline_bounds_actor"), TEXT("Set the points of a PCG spline bounds actor."), {
				RequiredText(TEXT("ActorNameOrLabel"), TEXT("Spline bounds actor name, label, or path from pcg_create_spline_bounds_actor.")),
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this changes an actor in the current editor world.")),
				OptionalText(TEXT("Length"), TEXT("Optional new rectangle size along X in centimetres, 100 to 1000000. Defaults to the current length.")),
				OptionalText(TEXT("Width"), TEXT("Optional new rectangle size along Y in centimetres, 100 to 1000000. Defaults to the current width.")),
			}, &ZorvekMCPBridgePcgCityTools::HandleSetSplineBoundsActor),
			ToolRow(TEXT("pcg_create_forest_repro"), TEXT("Create a minimal PCG forest graph asset for forest reproduction workflows."), {
				OptionalText(TEXT("GraphPath"), TEXT("PCG graph asset path for the forest. Defaults to /Game/ZorvekMCP/PCG/PCG_ZorvekForest.")),
				OptionalText(TEXT("Density"), TEXT("Trees per square metre, the surface sampler's PointsPerSquaredMeter; above 0, at most 1. Defaults to 0.05.")),
				OptionalText(TEXT("Looseness"), TEXT("How far trees stray from a regular grid, 0 to 1, the surface sampler's Looseness. Defaults to 1.")),
				OptionalObject(TEXT("MeshPaths"), TEXT("Array of static mesh object paths the spawner picks from with equal weight. Defaults to the engine cone (weight 3) and cylinder (weight 1).")),
			}, &ZorvekMCPBridgePcgForestTools::HandleCreateForestRepro),
			ToolRow(TEXT("pcg_place_forest_actor"), TEXT("Place an actor with a PCG component running a forest graph into the current editor world."), {
				OptionalText(TEXT("GraphPath"), TEXT("PCG graph asset path for the forest. Defaults to /Game/ZorvekMCP/PCG/PCG_ZorvekForest.")),
				OptionalText(TEXT("ActorLabel"), TEXT("Editor label of the forest volume; must not be taken. Defaults to ZorvekPCGForest.")),
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this mutates the current editor world.")),
				OptionalText(TEXT("LocationX"), TEXT("Optional forest centre X. Defaults to 0.")),
				OptionalText(TEXT("LocationY"), TEXT("Optional forest centre Y. Defaults to 0.")),
				OptionalText(TEXT("LocationZ"), TEXT("Optional forest centre Z. Defaults to 0.")),
				OptionalText(TEXT("SizeX"), TEXT("Forest size along X in cm. Defaults to 4000.")),
				OptionalText(TEXT("SizeY"), TEXT("Forest size along Y in cm. Defaults to 4000.")),
				OptionalText(TEXT("SizeZ"), TEXT("Forest height in cm. Defaults to 400.")),
				OptionalText(TEXT("Seed"), TEXT("PCG component seed; the same seed gives the same forest. Defaults to 42.")),
				OptionalText(TEXT("Generate"), TEXT("Optional bool: request generation after the change. Defaults to true.")),
			}, &ZorvekMCPBridgePcgForestTools::HandlePlaceForestActor),
			ToolRow(TEXT("pcg_inspect_graph"), TEXT("Read the nodes, settings, and edges of a PCG graph asset."), {
				OptionalText(TEXT("GraphPath"), TEXT("PCG graph asset path to read. Defaults to /Game/ZorvekMCP/PCG/PCG_ZorvekForest unless ForestActorNameOrLabel is given.")),
				OptionalText(TEXT("ForestActorNameOrLabel"), TEXT("Optional forest actor whose PCG component graph is read when GraphPath is empty.")),
			}, &ZorvekMCPBridgePcgForestTools::HandleInspectGraph),
			ToolRow(TEXT("pcg_set_forest_bounds"), TEXT("Set the box bounds of a PCG forest actor."), {
				RequiredText(TEXT("ForestActorNameOrLabel"), TEXT("Forest actor name, label, or path from pcg_place_forest_actor or pcg_run_forest_recipe.")),
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this mutates the current editor world.")),
				OptionalText(TEXT("SizeX"), TEXT("New forest size along X in cm. Defaults to the current size.")),
				OptionalText(TEXT("SizeY"), TEXT("New forest size along Y in cm. Defaults to the current size.")),
				OptionalText(TEXT("SizeZ"), TEXT("New forest height in cm. Defaults to the current height.")),
				OptionalText(TEXT("Generate"), TEXT("Optional bool: request generation after the change. Defaults to true.")),
			}, &ZorvekMCPBridgePcgForestTools::HandleSetForestBounds),
			ToolRow(TEXT("pcg_generate"), TEXT("Request generation of the PCG component on an editor-world forest actor and report the component's state."), {
				OptionalText(TEXT("ForestActorNameOrLabel"), TEXT("Forest actor name, label, or path whose PCG component should generate.")),
			}, &ZorvekMCPBridgePcgTools::HandleGenerate),
			ToolRow(TEXT("pcg_create_visual_repro_output"), TEXT("Create tagged stand-in tree actors that show a PCG forest actor's output in the editor world."), {
				RequiredText(TEXT("ForestActorNameOrLabel"), TEXT("Forest actor name, label, or path from pcg_place_forest_actor or pcg_run_forest_recipe.")),
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this mutates the current editor world.")),
				OptionalText(TEXT("MaxActors"), TEXT("Most stand-in actors to place, 1 to 1000. Defaults to 200.")),
				OptionalText(TEXT("MeshPath"), TEXT("Static mesh of the stand-ins. Defaults to /Engine/BasicShapes/Cone.Cone.")),
			}, &ZorvekMCPBridgePcgForestTools::HandleCreateVisualReproOutput),
			ToolRow(TEXT("pcg_inspect_generated"), TEXT("Report what an editor-world forest actor's PCG component and the bridge's visual output actors have produced."), {
				OptionalText(TEXT("ForestActorNameOrLabel"), TEXT("Forest actor name, label, or path whose PCG output should be inspected.")),
			}, &ZorvekMCPBridgePcgTools::HandleInspectGenerated),
			ToolRow(TEXT("pcg_run_forest_recipe"), TEXT("Run the whole PCG forest workflow in one call: graph, actor, bounds, generation, and readback."), {
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this mutates the current editor world.")),
				OptionalText(TEXT("GraphPath"), TEXT("PCG graph asset path for the forest. Defaults to /Game/ZorvekMCP/PCG/PCG_ZorvekForest.")),
				OptionalText(TEXT("Density"), TEXT("Trees per square metre, the surface sampler's PointsPerSquaredMeter; above 0, at most 1. Defaults to 0.05.")),
				OptionalText(TEXT("Looseness"), TEXT("How far trees stray from a regular grid, 0 to 1, the surface sampler's Looseness. Defaults to 1.")),
				OptionalObject(TEXT("MeshPaths"), TEXT("Array of static mesh object paths the spawner picks from with equal weight. Defaults to the engine cone (weight 3) and cylinder (weight 1).")),
				OptionalText(TEXT("ActorLabel"), TEXT("Editor label of the forest volume; must not be taken. Defaults to ZorvekPCGForest.")),
				OptionalText(TEXT("LocationX"), TEXT("Optional forest centre X. Defaults to 0.")),
				OptionalText(TEXT("LocationY"), TEXT("Optional forest centre Y. Defaults to 0.")),
				OptionalText(TEXT("LocationZ"), TEXT("Optional forest centre Z. Defaults to 0.")),
				OptionalText(TEXT("SizeX"), TEXT("Forest size along X in cm. Defaults to 4000.")),
				OptionalText(TEXT("SizeY"), TEXT("Forest size along Y in cm. Defaults to 4000.")),
				OptionalText(TEXT("SizeZ"), TEXT("Forest height in cm. Defaults to 400.")),
				OptionalText(TEXT("Seed"), TEXT("PCG component seed; the same seed gives the same forest. Defaults to 42.")),
			}, &ZorvekMCPBridgePcgForestTools::HandleRunForestRecipe),
			ToolRow(TEXT("pcg_run_road_recipe"), TEXT("Run a PCG straight road strip workflow in one call."), {
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this places actors in the current editor world.")),
				OptionalText(TEXT("RecipeLabel"), TEXT("Optional name of this strip: its actors are labelled <RecipeLabel>_Road01... and tagged ZorvekPCGRoad_<RecipeLabel>. Defaults to ZorvekPCGRoad; one strip per label.")),
				OptionalText(TEXT("SegmentCount"), TEXT("Optional number of road segments, 1 to 100. Defaults to 5.")),
				OptionalText(TEXT("SegmentLength"), TEXT("Optional length of each segment in whole centimetres, 100 to 1000000. Defaults to 2000.")),
				OptionalText(TEXT("LaneCount"), TEXT("Optional lanes per road, 1 to 8. Defaults to 2.")),
				OptionalText(TEXT("PackagePath"), TEXT("Optional content folder of the road Blueprint, made once per lanes and length and reused. Defaults to /Game/ZorvekPCG/Roads.")),
				OptionalText(TEXT("LocationX"), TEXT("Optional start of the strip, X. Defaults to 0.")),
				OptionalText(TEXT("LocationY"), TEXT("Optional start of the strip, Y. Defaults to 0.")),
				OptionalText(TEXT("LocationZ"), TEXT("Optional start of the strip, Z. Defaults to 0.")),
				OptionalText(TEXT("RotationYaw"), TEXT("Optional direction of the strip in degrees; 0 runs along X. Defaults to 0.")),
			}, &ZorvekMCPBridgePcgCityTools::HandleRunRoadRecipe),
			ToolRow(TEXT("pcg_run_spline_road_proof"), TEXT("Run a PCG road workflow bounded by a spline rectangle."), {
				OptionalText(TEXT("ActorNameOrLabel"), TEXT("Required spline bounds actor from pcg_create_spline_bounds_actor, by name, label or path.")),
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this mutates the current editor world.")),
				OptionalText(TEXT("RecipeLabel"), TEXT("Optional name of the strip: actors <RecipeLabel>_Road01... tagged ZorvekPCGSplineRoad_<RecipeLabel>. Defaults to ZorvekPCGSplineRoad; one strip per label.")),
				OptionalText(TEXT("SegmentCount"), TEXT("Optional segments along the rectangle's length, 1 to 100, each at least 100 cm. Defaults to one per 20 m, rounded up.")),
				OptionalText(TEXT("LaneCount"), TEXT("Optional lanes, 1 to 8; the road must fit the rectangle's width. Defaults to 2.")),
				OptionalText(TEXT("PackagePath"), TEXT("Optional content folder of the road Blueprint, made once and reused. Defaults to /Game/ZorvekPCG/Roads.")),
			}, &ZorvekMCPBridgePcgCityTools::HandleRunSplineRoadProof),
			ToolRow(TEXT("pcg_run_city_layout_recipe"), TEXT("Run a PCG grid city layout workflow with roads, intersections, and skyscrapers."), {
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this places actors in the current editor world.")),
				OptionalText(TEXT("RecipeLabel"), TEXT("Optional name of this city: its actors are labelled <RecipeLabel>_<Piece>_<Column>_<Row> and tagged ZorvekPCGCity_<RecipeLabel>. Defaults to ZorvekPCGCity; one city per label.")),
				OptionalText(TEXT("Columns"), TEXT("Optional blocks along X, 1 to 20. Defaults to 3.")),
				OptionalText(TEXT("Rows"), TEXT("Optional blocks along Y, 1 to 20. Defaults to 3.")),
				OptionalText(TEXT("RoadLength"), TEXT("Optional length of the road between two intersections in whole centimetres, 100 to 10000. Defaults to 2000.")),
				OptionalText(TEXT("LaneCount"), TEXT("Optional lanes per road, 1 to 8. Defaults to 2.")),
				OptionalText(TEXT("MinFloors"), TEXT("Optional fewest skyscraper floors, 1 to 200. Defaults to 5.")),
				OptionalText(TEXT("MaxFloors"), TEXT("Optional most skyscraper floors, 1 to 200, not below MinFloors. Defaults to 30.")),
				OptionalText(TEXT("Seed"), TEXT("Optional seed of the floor counts, 0 to 2147483647; one seed always gives the same city. Defaults to 42.")),
				OptionalText(TEXT("PackagePath"), TEXT("Optional content folder of the piece Blueprints, made once and reused. Defaults to /Game/ZorvekPCG/City.")),
				OptionalText(TEXT("LocationX"), TEXT("Optional centre of the first intersection, X. Defaults to 0.")),
				OptionalText(TEXT("LocationY"), TEXT("Optional centre of the first intersection, Y. Defaults to 0.")),
				OptionalText(TEXT("LocationZ"), TEXT("Optional centre of the first intersection, Z. Defaults to 0.")),
			}, &ZorvekMCPBridgePcgCityTools::HandleRunCityLayoutRecipe),
			ToolRow(TEXT("pcg_update_city_layout_recipe"), TEXT("Make a city layout from pcg_run_city_layout_recipe bigger or denser."), {
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this mutates the current editor world.")),
				OptionalText(TEXT("RecipeLabel"), TEXT("Optional label of the city to change, as given to pcg_run_city_layout_recipe. Defaults to ZorvekPCGCity.")),
				OptionalText(TEXT("Columns"), TEXT("Optional new blocks along X, 1 to 20. Defaults to the city's.")),
				OptionalText(TEXT("Rows"), TEXT("Optional new blocks along Y, 1 to 20. Defaults to the city's.")),
				OptionalText(TEXT("MinFloors"), TEXT("Optional fewest skyscraper floors, 1 to 200; redraws every tower's floors. Defaults to the city's lowest tower.")),
				OptionalText(TEXT("MaxFloors"), TEXT("Optional most skyscraper floors, 1 to 200; redraws every tower's floors. Defaults to the city's tallest tower.")),
				OptionalText(TEXT("Seed"), TEXT("Optional seed of the floor counts, 0 to 2147483647; redraws every tower's floors. Defaults to 42.")),
			}, &ZorvekMCPBridgePcgCityTools::HandleUpdateCityLayoutRecipe),
			ToolRow(TEXT("pcg_update_forest_recipe"), TEXT("Adjust the size, density, or naturalness of a forest from pcg_run_forest_recipe."), {
				OptionalText(TEXT("ForestActorNameOrLabel"), TEXT("Forest actor name, label, or path. Defaults to ZorvekPCGForest.")),
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this mutates the current editor world.")),
				OptionalText(TEXT("Density"), TEXT("New trees per square metre, above 0, at most 1.")),
				OptionalText(TEXT("DensityScale"), TEXT("Multiplies the density, for example 2 for a denser forest.")),
				OptionalText(TEXT("Looseness"), TEXT("New looseness 0 to 1; 1 looks most natural.")),
				OptionalText(TEXT("SizeX"), TEXT("New forest size along X in cm. Defaults to the current size.")),
				OptionalText(TEXT("SizeY"), TEXT("New forest size along Y in cm. Defaults to the current size.")),
				OptionalText(TEXT("SizeZ"), TEXT("New forest height in cm. Defaults to the current height.")),
				OptionalText(TEXT("SizeScale"), TEXT("Multiplies the size, for example 1.5 for a bigger forest.")),
				OptionalText(TEXT("Seed"), TEXT("New PCG component seed for a different arrangement.")),
			}, &ZorvekMCPBridgePcgForestTools::HandleUpdateForestRecipe),
			ToolRow(TEXT("pcg_multiclass_spawn_proof"), TEXT("Show several actor classes spawned from one PCG forest setup."), {
				OptionalText(TEXT("ActorClasses"), TEXT("Required array of 2 to 8 actor class paths (native or Blueprint generated classes); generated point i gets class i modulo their count.")),
				OptionalText(TEXT("AllowCurrentLevel"), TEXT("Required true because this mutates the current editor world.")),
				OptionalText(TEXT("ForestActorNameOrLabel"), TEXT("Optional generated forest actor name, label or path. Defaults to ZorvekPCGForest.")),
				OptionalText(TEXT("MaxActors"), TEXT("Optional most actors placed in all sets together, 1 to 1000. Defaults to 200.")),
			}, &ZorvekMCPBridgePcgMulticlassTools::HandleMulticlassSpawnProof),

			// Fixture assets.
			ToolRow(TEXT("unreal_create_mossbank_repro_assets"), TEXT("Create minimal dummy CameraAsset, CameraRigAsset, and StateTree assets for validating Mossbank H/G inspection readers."), {
				OptionalText(TEXT("PackagePath"), TEXT("Content folder path for generated repro assets. Defaults to /Game/ZorvekRepro/MossbankHG.")),
				OptionalText(TEXT("AssetPrefix"), TEXT("Prefix for generated asset names. Defaults to ZorvekHG.")),
			}, &ZorvekMCPBridgeReproAssetTools::HandleCreateMossbankReproAssets),
			ToolRow(TEXT("unreal_create_material_repro_assets"), TEXT("Create minimal Material fixture assets for validating material inspection and authoring."), {
				OptionalText(TEXT("PackagePath"), TEXT("Content folder path for generated repro assets. Defaults to a new timestamped folder under /Game/ZorvekRepro.")),
				OptionalText(TEXT("AssetPrefix"), TEXT("Prefix for generated asset names. Defaults to ZorvekMat.")),
			}, &ZorvekMCPBridgeMaterialTools::HandleCreateMaterialReproAssets),

			// Materials.
			ToolRow(TEXT("material_create"), TEXT("Create a blank Material asset for minimal allowlisted material graph authoring."), {
				RequiredText(TEXT("PackagePath"), TEXT("Content folder path, for example /Game/Materials.")),
				RequiredText(TEXT("AssetName"), TEXT("New Material asset name.")),
			}, &ZorvekMCPBridgeMaterialTools::HandleCreateMaterial),
			ToolRow(TEXT("material_find_expression_classes"), TEXT("Find canonical Material expression classes and report whether each is supported for current material authoring."), {
				OptionalText(TEXT("Query"), TEXT("Optional class name, display name, or alias to match, for example lerp. Empty lists every class.")),
				OptionalText(TEXT("SupportedOnly"), TEXT("Optional bool. When true, only classes material_add_expression supports are returned. Defaults to false.")),
				OptionalText(TEXT("Limit"), TEXT("Maximum classes to return. Defaults to 50.")),
			}, &ZorvekMCPBridgeMaterialTools::HandleFindExpressionClasses),
			ToolRow(TEXT("material_resolve_expression_class"), TEXT("Resolve a human material expression request to a canonical class with confidence and match reasons. Does not mutate materials."), {
				RequiredText(TEXT("Query"), TEXT("Human expression request, for example lerp or Texture Coordinate.")),
				OptionalText(TEXT("RequireSupported"), TEXT("Optional bool. When true, only classes material_add_expression supports are considered. Defaults to false.")),
			}, &ZorvekMCPBridgeMaterialTools::HandleResolveExpressionClass),
			ToolRow(TEXT("material_add_expression"), TEXT("Add an allowlisted canonical material expression to a Material asset."), {
				RequiredText(TEXT("MaterialNameOrPath"), MaterialNameOrPathDescription),
				RequiredText(TEXT("ExpressionClass"), TEXT("Allowlisted canonical expression class, for example MaterialExpressionLinearInterpolate.")),
				OptionalText(TEXT("NodeName"), TEXT("Optional object name for the new expression.")),
				OptionalText(TEXT("ParameterName"), TEXT("Optional parameter name, for parameter expressions only.")),
				OptionalText(TEXT("DefaultValue"), TEXT("Optional default value text, imported into DefaultValue (ConstExponent for Power).")),
				OptionalText(TEXT("TexturePath"), TEXT("Optional Texture asset path for expressions with a Texture property.")),
				OptionalText(TEXT("Description"), TEXT("Optional description bubble text for the expression.")),
				OptionalObject(TEXT("PropertyValues"), TEXT("Optional reflected property values keyed by exact property name.")),
				OptionalText(TEXT("NodePosX"), TEXT("Optional expression X position. Defaults to 0.")),
				OptionalText(TEXT("NodePosY"), TEXT("Optional expression Y position. Defaults to 0.")),
			}, &ZorvekMCPBridgeMaterialTools::HandleAddExpression),
			ToolRow(TEXT("material_set_expression_property"), TEXT("Set a reflected property on an existing material expression by stable node GUID. Supports small safe aliases such as Power Exponent to ConstExponent."), {
				RequiredText(TEXT("MaterialNameOrPath"), MaterialNameOrPathDescription),
				RequiredText(TEXT("NodeGuid"), TEXT("Expression node_guid from material_add_expression or the material readback.")),
				RequiredText(TEXT("PropertyName"), TEXT("Reflected property name to set, for example ConstExponent. Exponent is accepted for Power.")),
				RequiredText(TEXT("Value"), TEXT("Value to import as property text. Numbers and bools are accepted as well.")),
			}, &ZorvekMCPBridgeMaterialTools::HandleSetExpressionProperty),
			ToolRow(TEXT("material_connect_expressions"), TEXT("Connect one material expression output to another expression input by stable GUID and exact input name."), {
				RequiredText(TEXT("MaterialNameOrPath"), MaterialNameOrPathDescription),
				RequiredText(TEXT("SourceNodeGuid"), TEXT("Source expression node_guid.")),
				RequiredText(TEXT("TargetNodeGuid"), TEXT("Target expression node_guid.")),
				RequiredText(TEXT("TargetInputName"), TEXT("Exact input name on the target expression, for example A, B, or Alpha.")),
				OptionalText(TEXT("SourceOutputIndex"), TEXT("Source expression output index. Defaults to 0.")),
			}, &ZorvekMCPBridgeMaterialTools::HandleConnectExpressions),
			ToolRow(TEXT("material_connect_root"), TEXT("Connect an expression output to an allowlisted Material root input."), {
				RequiredText(TEXT("MaterialNameOrPath"), MaterialNameOrPathDescription),
				RequiredText(TEXT("SourceNodeGuid"), TEXT("Source expression node_guid.")),
				RequiredText(TEXT("RootInputName"), TEXT("Material root input: BaseColor, Roughness, EmissiveColor, Normal, Metallic, Specular, or Opacity.")),
				OptionalText(TEXT("SourceOutputIndex"), TEXT("Source expression output index. Defaults to 0.")),
			}, &ZorvekMCPBridgeMaterialTools::HandleConnectRoot),
			ToolRow(TEXT("material_update"), TEXT("Apply editor update/dirty behavior to a Material and return specialized material readback."), {
				RequiredText(TEXT("MaterialNameOrPath"), MaterialNameOrPathDescription),
			}, &ZorvekMCPBridgeMaterialTools::HandleUpdateMaterial),

			// Blueprints.
			ToolRow(TEXT("blueprint_create"), TEXT("Create a Blueprint asset from a native Unreal parent class."), {
				RequiredText(TEXT("PackagePath"), ContentFolderPathDescription),
				RequiredText(TEXT("AssetName"), TEXT("New Blueprint asset name.")),
				OptionalText(TEXT("ParentClassPath"), TEXT("Parent class path, for example /Script/Engine.Actor or /Script/Engine.Character.")),
			}, &ZorvekMCPBridgeBlueprintMemberTools::HandleCreate),
			ToolRow(TEXT("blueprint_create_primitive_actor"), TEXT("Create an actor Blueprint built from engine primitive meshes, for example a dummy tree from a cylinder and a sphere. Every part is checked before the Blueprint is created; each becomes a StaticMeshComponent under a scene root named Root, and the Blueprint is compiled."), {
				RequiredText(TEXT("PackagePath"), ContentFolderPathDescription),
				RequiredText(TEXT("AssetName"), TEXT("New Blueprint asset name.")),
				OptionalText(TEXT("ParentClassPath"), TEXT("Optional Actor class path. Defaults to /Script/Engine.Actor.")),
				OptionalObject(TEXT("Parts"), TEXT("Array of up to 128 parts: {Name, Shape (Cube, Sphere, Cylinder, Cone, or Plane; each 100 cm, centred on its pivot), Location {X,Y,Z}, Rotation {Pitch,Yaw,Roll}, Scale {X,Y,Z} (objects, arrays of three numbers, or flat LocationX..ScaleZ keys; relative to the parent; scale not 0), MaterialPath (optional; defaults to the basic shape material), ParentName (optional; another part, defaults to Root)}.")),
				OptionalText(TEXT("Preset"), TEXT("Optional preset: DummyTree (cylinder Trunk and sphere Crown, with the project's bark/wood and leaf/foliage materials when it has them) or VisualActor (one Body cube). Its parts come first; Parts adds to them.")),
				OptionalText(TEXT("Compile"), TEXT("Optional bool. Defaults to true.")),
			}, &ZorvekMCPBridgePrimitiveActorTools::HandleCreatePrimitiveActor),
			ToolRow(TEXT("blueprint_create_interface"), TEXT("Create a Blueprint Interface asset for interface implementation tests and workflows."), {
				RequiredText(TEXT("PackagePath"), ContentFolderPathDescription),
				RequiredText(TEXT("AssetName"), TEXT("New Blueprint Interface asset name.")),
			}, &ZorvekMCPBridgeBlueprintMemberTools::HandleCreateInterface),
			ToolRow(TEXT("blueprint_add_variable"), TEXT("Add a member variable to a Blueprint using native Unreal editor APIs."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				RequiredText(TEXT("VarName"), TEXT("Variable name to add.")),
				RequiredText(TEXT("Type"), TEXT("Variable type: bool, int, float, string, name, text, vector, rotator, transform, object, class, or arrays like float[] / array<float>.")),
				OptionalText(TEXT("ObjectClassPath"), TEXT("Optional class path for object/class variables, for example /Script/Engine.Actor. Defaults to Actor.")),
				OptionalText(TEXT("DefaultValue"), TEXT("Optional default value string.")),
				OptionalText(TEXT("Category"), TEXT("Optional variable category.")),
			}, &ZorvekMCPBridgeBlueprintMemberTools::HandleAddVariable),
			ToolRow(TEXT("blueprint_add_component"), TEXT("Add a component to a Blueprint's SimpleConstructionScript."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				RequiredText(TEXT("ComponentName"), TEXT("Component variable name.")),
				RequiredText(TEXT("ComponentClassPath"), TEXT("Component class name/path, for example SpringArmComponent, CameraComponent, /Script/Engine.CameraComponent.")),
				OptionalText(TEXT("ParentComponentName"), TEXT("Optional parent component name.")),
				OptionalObject(TEXT("Properties"), TEXT("Optional property values keyed by property name.")),
				OptionalText(TEXT("PrimitiveShape"), TEXT("Optional built-in primitive mesh shape for StaticMeshComponent: Cube, Sphere, Cylinder, Cone, or Plane.")),
				OptionalText(TEXT("StaticMeshPath"), TEXT("Optional StaticMesh asset package/object path to assign to StaticMeshComponent.")),
				OptionalText(TEXT("MaterialPath"), TEXT("Optional Material or MaterialInstance asset package/object path to assign to mesh slot 0.")),
			}, &ZorvekMCPBridgeBlueprintMemberTools::HandleAddComponent),
			ToolRow(TEXT("blueprint_add_component_motion"), TEXT("Add simple motion, such as rotation or bobbing, to a component of a Blueprint. Builds the nodes from Event Tick without a timeline, with editable float variables named after the component, and compiles; reports each step, and a refused step removes what the call added."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				RequiredText(TEXT("ComponentName"), TEXT("Scene component of the Actor Blueprint to move: one of its components or an inherited one.")),
				OptionalText(TEXT("MotionType"), TEXT("Rotate (spin about the axis), Bob (up and down along the axis) or Orbit (circle around its base location in the plane normal to the axis). Defaults to Rotate.")),
				OptionalText(TEXT("Axis"), TEXT("X, Y or Z. Defaults to Z.")),
				OptionalText(TEXT("Speed"), TEXT("Degrees per second for Rotate and Orbit, cycles per second for Bob; negative turns the other way. Defaults to 90 (Rotate), 0.5 (Bob), 45 (Orbit).")),
				OptionalText(TEXT("Amplitude"), TEXT("Bob distance from the base location in centimetres. Defaults to 20.")),
				OptionalText(TEXT("Radius"), TEXT("Orbit radius in centimetres. Defaults to 100.")),
				OptionalText(TEXT("GraphName"), GraphNameToEditDescription),
				OptionalText(TEXT("Compile"), TEXT("Compile the Blueprint afterwards (true/false). Defaults to true.")),
			}, &ZorvekMCPBridgeBlueprintCompositeTools::HandleAddComponentMotion),
			ToolRow(TEXT("blueprint_add_dynamic_material_parameter_update"), TEXT("Add Blueprint nodes that create a dynamic material instance and update one of its parameters. At BeginPlay a material slot of a primitive component gets a dynamic instance kept in a variable, and a scalar or vector parameter is set from a variable, or pulsed on Tick over time; compiles and reports each step."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				RequiredText(TEXT("ComponentName"), TEXT("Primitive (mesh) component of the Actor Blueprint whose material slot gets the dynamic instance.")),
				OptionalText(TEXT("ElementIndex"), TEXT("Material slot index, 0 or more. Defaults to 0.")),
				OptionalText(TEXT("SourceMaterialPath"), TEXT("Optional material or material instance to make the instance from. Defaults to the slot's current material.")),
				RequiredText(TEXT("ParameterName"), TEXT("Material parameter to set, for example EmissiveStrength.")),
				OptionalText(TEXT("ParameterType"), TEXT("Scalar or Vector. Defaults to Scalar.")),
				OptionalText(TEXT("ValueSource"), TEXT("Variable (set once at BeginPlay from a variable) or Time (a scalar pulsing between Min and Max on Tick). Defaults to Variable.")),
				OptionalText(TEXT("VariableName"), TEXT("Variable mode: float (Scalar) or Linear Color (Vector) variable feeding the value, created when missing. Defaults to <ComponentName><ParameterName>.")),
				OptionalText(TEXT("DefaultValue"), TEXT("Variable mode: default of a variable the call creates, a number or a colour like (R=1,G=0.5,B=0,A=1). Defaults to 0 or white.")),
				OptionalText(TEXT("Speed"), TEXT("Time mode: pulses per second. Defaults to 0.5.")),
				OptionalText(TEXT("Min"), TEXT("Time mode: lowest value. Defaults to 0.")),
				OptionalText(TEXT("Max"), TEXT("Time mode: highest value. Defaults to 1.")),
				OptionalText(TEXT("GraphName"), GraphNameToEditDescription),
				OptionalText(TEXT("Compile"), TEXT("Compile the Blueprint afterwards (true/false). Defaults to true.")),
			}, &ZorvekMCPBridgeBlueprintCompositeTools::HandleAddDynamicMaterialParameterUpdate),
			ToolRow(TEXT("blueprint_create_function"), TEXT("Create a Blueprint function graph with optional typed inputs and outputs."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				RequiredText(TEXT("FunctionName"), TEXT("Function name to create.")),
				OptionalObject(TEXT("Inputs"), TEXT("Optional array of input descriptors with Name, Type, and optional ObjectClassPath.")),
				OptionalObject(TEXT("Outputs"), TEXT("Optional array of output descriptors with Name, Type, and optional ObjectClassPath.")),
			}, &ZorvekMCPBridgeBlueprintMemberTools::HandleCreateFunction),
			ToolRow(TEXT("blueprint_create_event_graph"), TEXT("Create an additional Blueprint event graph page with an exact graph name."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				RequiredText(TEXT("GraphName"), TEXT("Additional event graph name to create.")),
			}, &ZorvekMCPBridgeBlueprintMemberTools::HandleCreateEventGraph),
			ToolRow(TEXT("blueprint_implement_interface"), TEXT("Add a Blueprint Interface to a Blueprint using native Unreal editor APIs."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				RequiredText(TEXT("InterfaceNameOrPath"), InterfaceNameOrPathDescription),
			}, &ZorvekMCPBridgeBlueprintMemberTools::HandleImplementInterface),
			ToolRow(TEXT("blueprint_add_interface_event"), TEXT("Add a Blueprint Interface implementation event node to a graph."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				OptionalText(TEXT("GraphName"), GraphNameToEditDescription),
				RequiredText(TEXT("InterfaceNameOrPath"), InterfaceNameOrPathDescription),
				RequiredText(TEXT("FunctionName"), TEXT("Interface function/event name to implement as an event node.")),
				OptionalText(TEXT("NodePosX"), TEXT("Node X position. Defaults to 0.")),
				OptionalText(TEXT("NodePosY"), TEXT("Node Y position. Defaults to 0.")),
			}, &ZorvekMCPBridgeBlueprintMemberTools::HandleAddInterfaceEvent),
			ToolRow(TEXT("blueprint_add_custom_event"), TEXT("Add a custom event node with optional typed parameters using native Unreal editor APIs."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				OptionalText(TEXT("GraphName"), GraphNameToEditDescription),
				RequiredText(TEXT("EventName"), TEXT("Custom event name to create.")),
				OptionalObject(TEXT("Parameters"), TEXT("Optional array of output parameter descriptors with Name, Type, and optional ObjectClassPath.")),
			}, &ZorvekMCPBridgeBlueprintMemberTools::HandleAddCustomEvent),
			ToolRow(TEXT("blueprint_add_comment"), TEXT("Add a Blueprint graph comment box with explicit bounds."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				OptionalText(TEXT("GraphName"), GraphNameToEditDescription),
				RequiredText(TEXT("CommentText"), TEXT("Comment text to display.")),
				OptionalText(TEXT("NodePosX"), TEXT("Comment box X position. Defaults to 0.")),
				OptionalText(TEXT("NodePosY"), TEXT("Comment box Y position. Defaults to 0.")),
				OptionalText(TEXT("Width"), TEXT("Comment box width. Defaults to 400.")),
				OptionalText(TEXT("Height"), TEXT("Comment box height. Defaults to 220.")),
				OptionalText(TEXT("FontSize"), TEXT("Optional comment font size. Defaults to Unreal's comment-node default.")),
			}, &ZorvekMCPBridgeBlueprintNodeTools::HandleAddComment),
			ToolRow(TEXT("blueprint_read_graph"), TEXT("Resolve a Blueprint and read graph data using native Unreal graph APIs."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				OptionalText(TEXT("GraphName"), TEXT("Graph name to read, for example EventGraph.")),
				OptionalText(TEXT("Limit"), TEXT("Maximum lines to return. Defaults to 1000.")),
			}, &ZorvekMCPBridgeBlueprintReadTools::HandleReadGraph),
			ToolRow(TEXT("blueprint_search_project"), TEXT("Search the project's Blueprints for names, nodes, comments, and examples before reading graphs. Each result names its asset_path, graph_name and node_guid with ready blueprint_read_graph or unreal_inspect_asset arguments; Blueprints that fail to load are listed under partial_failures."), {
				RequiredText(TEXT("Query"), TEXT("Words to find in Blueprint names, folders and parent classes, and in graph names, node titles, spawner ids, called functions, variable references, variables, components, comments, custom events, interfaces and functions, for example print string, Health or BP_Hero. Every word must be in one text; case, blanks, underscores and K2_ prefixes do not matter.")),
				OptionalObject(TEXT("PackagePaths"), TEXT("Optional array of content folders searched with their subfolders, or one folder text. Defaults to [\"/Game\"].")),
				OptionalObject(TEXT("Types"), TEXT("Optional array, or comma-separated text, of result types: blueprint, graph, node, variable, component, comment, custom_event, interface, function. Defaults to all. blueprint alone is answered from the Asset Registry without loading any Blueprint.")),
				OptionalText(TEXT("Limit"), TEXT("Maximum results to return, best matches first. Defaults to 50, at most 500.")),
				OptionalText(TEXT("MaxBlueprints"), TEXT("Maximum Blueprints one call opens to search their content, in Asset Registry order. Defaults to 1000; content_scan_truncated tells when more lie under PackagePaths.")),
			}, &ZorvekMCPBridgeBlueprintSearchTool::HandleSearchProject),
			ToolRow(TEXT("blueprint_compile"), TEXT("Compile a Blueprint and return structured compiler warnings, errors, and status."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
			}, &ZorvekMCPBridgeBlueprintNodeTools::HandleCompile),
			ToolRow(TEXT("blueprint_find_node_spawners"), TEXT("Search the native Blueprint node spawner catalogue for spawner ids. Results are ranked by title, names, keywords and category and carry each node's kind, pins, and whether it is pure or latent."), {
				OptionalText(TEXT("Query"), TEXT("Words to find in node titles, categories, keywords, and function, variable or class names, for example print string or add int. Case, blanks and K2_ prefixes do not matter. Empty lists the catalogue.")),
				OptionalText(TEXT("BlueprintNameOrPath"), TEXT("Optional Blueprint asset name, keyword, or full asset path whose own functions, variables, custom events and interface events are searched too.")),
				OptionalText(TEXT("Limit"), TEXT("Maximum spawners to return. Defaults to 25.")),
			}, &ZorvekMCPBridgeNodeSpawnerTools::HandleFindNodeSpawners),
			ToolRow(TEXT("blueprint_resolve_node_spawner"), TEXT("Resolve a human node request to one canonical Blueprint node spawner id."), {
				RequiredText(TEXT("Query"), TEXT("Node request, for example print string, branch, add int, get Health, cast to Character, or do once.")),
				OptionalText(TEXT("BlueprintNameOrPath"), TEXT("Optional Blueprint asset name, keyword, or full asset path whose own functions, variables, custom events and interface events are candidates too.")),
			}, &ZorvekMCPBridgeNodeSpawnerTools::HandleResolveNodeSpawner),
			ToolRow(TEXT("blueprint_add_node"), TEXT("Add a Blueprint node using an existing native spawner id."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				OptionalText(TEXT("GraphName"), GraphNameToEditDescription),
				RequiredText(TEXT("SpawnerId"), TEXT("Spawner id from blueprint_find_node_spawners.")),
				OptionalText(TEXT("NodeName"), TEXT("Optional alias/name for the new node.")),
				OptionalText(TEXT("NodePosX"), TEXT("Optional X position for the new node.")),
				OptionalText(TEXT("NodePosY"), TEXT("Optional Y position for the new node.")),
				OptionalObject(TEXT("PinDefaults"), TEXT("Optional pin default values keyed by pin name.")),
			}, &ZorvekMCPBridgeBlueprintNodeTools::HandleAddNode),
			ToolRow(TEXT("blueprint_set_node_position"), TEXT("Move an existing Blueprint graph node by GUID."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				OptionalText(TEXT("GraphName"), GraphNameToEditDescription),
				RequiredText(TEXT("NodeGuid"), TEXT("Node GUID to move.")),
				RequiredText(TEXT("NodePosX"), TEXT("New X position.")),
				RequiredText(TEXT("NodePosY"), TEXT("New Y position.")),
			}, &ZorvekMCPBridgeBlueprintNodeTools::HandleSetNodePosition),
			ToolRow(TEXT("blueprint_connect_nodes"), TEXT("Connect two Blueprint nodes by GUID and pin name."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				OptionalText(TEXT("GraphName"), GraphNameToEditDescription),
				RequiredText(TEXT("SourceNodeGuid"), TEXT("Source node GUID.")),
				RequiredText(TEXT("SourcePinName"), TEXT("Source output pin name.")),
				RequiredText(TEXT("TargetNodeGuid"), TEXT("Target node GUID.")),
				RequiredText(TEXT("TargetPinName"), TEXT("Target input pin name.")),
			}, &ZorvekMCPBridgeBlueprintNodeTools::HandleConnectNodes),
			ToolRow(TEXT("blueprint_add_node_by_search_and_connect"), TEXT("Find a node spawner by search, add the node, and connect it in one call. Reports each step; a refused connection removes the new node again."), {
				RequiredText(TEXT("BlueprintNameOrPath"), BlueprintNameOrPathDescription),
				OptionalText(TEXT("GraphName"), GraphNameToEditDescription),
				RequiredText(TEXT("Query"), TEXT("Node request resolved as blueprint_resolve_node_spawner does, for example print string.")),
				RequiredText(TEXT("ExistingNodeGuid"), TEXT("GUID of the node in the graph to connect the new node to.")),
				RequiredText(TEXT("ExistingPinName"), TEXT("Pin of that node: an output pin feeds the new node, an input pin is fed by it. then, execute, self and Target fall back as in blueprint_connect_nodes.")),
				OptionalText(TEXT("NewNodePinName"), TEXT("Optional pin of the new node. Defaults to its first visible pin of the other direction that fits: exec for exec, else the same type, the same category, or a wildcard.")),
				OptionalText(TEXT("NodeName"), TEXT("Optional alias/name for the new node.")),
				OptionalText(TEXT("NodePosX"), TEXT("Optional X position for the new node. Defaults to 400 right of the existing node for an output pin, 400 left of it for an input pin.")),
				OptionalText(TEXT("NodePosY"), TEXT("Optional Y position for the new node. Defaults to the existing node's Y.")),
				OptionalObject(TEXT("PinDefaults"), TEXT("Optional pin default values keyed by pin name.")),
			}, &ZorvekMCPBridgeNodeSpawnerTools::HandleAddNodeBySearchAndConnect),
			ToolRow(TEXT("blueprint_run_recipe"), TEXT("Run a deterministic sequence of supported Blueprint-writing tool calls with per-step results and reference substitution. The whole recipe is checked before the first step runs: at most 100 steps, tools from the supported list, references only to earlier steps. A string that is exactly $StepId.path takes the referenced value with its type; ${StepId.path} inside a longer text inserts it as text; a path segment of digits indexes an array. Stops at the first failing step and rolls nothing back."), {
				OptionalText(TEXT("RecipeName"), TEXT("Optional recipe name for reporting.")),
				RequiredObject(TEXT("Steps"), TEXT("Array of step objects with Id, ToolName, and Arguments. Later string arguments can reference prior structured results as $StepId.path.to.field.")),
			}, &ZorvekMCPBridgeRecipeTool::HandleRunRecipe),
		};
	}
}

const TArray<FZorvekMCPBridgeToolDefinition>& ZorvekMCPBridgeTools::GetToolTable()
{
	static const TArray<FZorvekMCPBridgeToolDefinition> Table = BuildToolTable();
	return Table;
}
