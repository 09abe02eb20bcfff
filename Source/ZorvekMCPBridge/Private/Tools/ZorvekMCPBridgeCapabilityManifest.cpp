// unreal_get_capabilities: the manifest an agent reads before it concludes that something cannot
// be done. Docs/Capabilities.md explains every capability id listed here.
#include "Tools/ZorvekMCPBridgeDiscoveryTools.h"

#include "Dom/JsonValue.h"

namespace
{
	using ZorvekMCPBridgeDiscoveryTools::ToJsonStringArray;

	TSharedPtr<FJsonObject> BuildFeatureMatrix()
	{
		TSharedPtr<FJsonObject> Matrix = MakeShared<FJsonObject>();
		for (const ZorvekMCPBridgeDiscoveryTools::FCapability& Capability : ZorvekMCPBridgeDiscoveryTools::GetCapabilities())
		{
			Matrix->SetBoolField(Capability.Id, Capability.bSupported);
		}
		return Matrix;
	}

	TSharedPtr<FJsonObject> BuildDiscoveryFlow()
	{
		TSharedPtr<FJsonObject> Flow = MakeShared<FJsonObject>();
		Flow->SetArrayField(TEXT("steps"), ToJsonStringArray({
			TEXT("Call unreal_get_status to confirm the bridge is running and which Unreal version it serves."),
			TEXT("Call unreal_get_capabilities before inferring limitations from a partial or lazily exposed tool list."),
			TEXT("Call unreal_recommend_tools with the user's task to focus on the relevant tools."),
			TEXT("Call tools/list or host-specific tool search for blueprint_* tools."),
			TEXT("Use blueprint_search_project to find examples or comments before filesystem scraping."),
			TEXT("Use blueprint_read_graph with asset_path and graph_name from search results."),
			TEXT("Use blueprint_find_node_spawners or blueprint_resolve_node_spawner before adding arbitrary nodes."),
			TEXT("Prefer blueprint_add_node with canonical SpawnerId for mutations."),
			TEXT("Use blueprint_connect_nodes for execution/data flow."),
			TEXT("Use blueprint_run_recipe for multi-step Blueprint edits."),
			TEXT("Call blueprint_compile, then verify the result with blueprint_read_graph."),
		}));
		return Flow;
	}

	TSharedPtr<FJsonObject> BuildPreferredWorkflows()
	{
		TSharedPtr<FJsonObject> Workflows = MakeShared<FJsonObject>();
		Workflows->SetArrayField(TEXT("route_user_task_to_tools"), ToJsonStringArray({
			TEXT("Call unreal_get_status to confirm the bridge is running."),
			TEXT("Call unreal_recommend_tools with the user's task and, when known, the Domain, Intent and AssetType hints."),
			TEXT("Start with relevant_tools and first_steps; consider possibly_relevant_tools before concluding that a tool is missing."),
			TEXT("Report unsupported_boundaries plainly instead of faking unsupported work."),
		}));
		Workflows->SetArrayField(TEXT("bob_direct_mcp_smoke"), ToJsonStringArray({
			TEXT("In Unreal, open Tools > Zorvek MCP Bridge > Connect AI Assistant... and copy the IBM Bob manual setup snippet."),
			TEXT("Add the snippet to Bob's MCP configuration; Bob talks to the existing local endpoint directly, no coordinator is needed."),
			TEXT("Ask Bob to call unreal_get_status, then unreal_get_capabilities."),
			TEXT("Ask Bob to call unreal_recommend_tools with the user's task; if Bob sees a partial tool list, list or search tools again before deciding Zorvek cannot do something."),
		}));
		Workflows->SetArrayField(TEXT("jules_async_local_validation"), ToJsonStringArray({
			TEXT("Copy the Jules task packet from Tools > Zorvek MCP Bridge > Connect AI Assistant...."),
			TEXT("Jules makes GitHub/repository changes only; it cannot reach the user's 127.0.0.1 Unreal endpoint and no Zorvek-hosted relay exists."),
			TEXT("Jules hands a local validation packet to an Unreal-capable agent on the user's machine."),
			TEXT("That agent calls unreal_get_status, unreal_get_capabilities, and unreal_recommend_tools, then validates the change with the recommended tools."),
		}));
		Workflows->SetArrayField(TEXT("bob_jules_onboarding"), ToJsonStringArray({
			TEXT("Use Tools > Zorvek MCP Bridge > Connect AI Assistant... in the Unreal Editor for client setup; MCP can report endpoint/status but config writes are editor UI driven."),
			TEXT("IBM Bob connects directly to the local MCP endpoint through its manual setup snippet."),
			TEXT("Google Jules works asynchronously through its task packet and a local validation packet run by an Unreal-capable agent."),
			TEXT("Existing direct MCP clients (Codex, Gemini CLI, Google Antigravity, Claude Code, Cursor, JetBrains Rider) keep their setup unchanged."),
		}));
		Workflows->SetArrayField(TEXT("find_existing_blueprint_context"), ToJsonStringArray({
			TEXT("Call blueprint_search_project with the user's query and package paths."),
			TEXT("Follow result recommended_next_tools; use unreal_resolve_asset when only part of a name is known."),
			TEXT("Call blueprint_read_graph with asset_path and graph_name from the results, and read further graphs from available_graphs."),
			TEXT("Use unreal_inspect_asset for the asset's reflected properties and references."),
		}));
		Workflows->SetArrayField(TEXT("data_asset_discovery"), ToJsonStringArray({
			TEXT("Call data_asset_find_classes to find the exact Data Asset / Primary Data Asset class."),
			TEXT("Create instances with data_asset_create for one asset or data_asset_create_batch for several; never use blueprint_create for Data Asset instances."),
			TEXT("Set top-level or nested struct fields with data_asset_set_property; array/map indexing is not supported."),
			TEXT("Verify the assets with unreal_inspect_asset."),
		}));
		Workflows->SetArrayField(TEXT("write_blueprint_graph"), ToJsonStringArray({
			TEXT("Create the Blueprint with blueprint_create, or find it with unreal_resolve_asset."),
			TEXT("Add members first: blueprint_add_variable, blueprint_add_component, blueprint_create_function, blueprint_add_custom_event."),
			TEXT("Get canonical SpawnerId values from blueprint_find_node_spawners or blueprint_resolve_node_spawner."),
			TEXT("Add nodes with blueprint_add_node and wire them with blueprint_connect_nodes."),
			TEXT("To add one node wired to an existing pin, call blueprint_add_node_by_search_and_connect with the request and that pin; it removes the node again if the link is refused."),
			TEXT("Lay nodes out with blueprint_set_node_position and group them with blueprint_add_comment."),
			TEXT("Call blueprint_compile, then blueprint_read_graph to verify."),
			TEXT("Send the same steps as one request with blueprint_run_recipe when the plan is known."),
		}));
		Workflows->SetArrayField(TEXT("create_primitive_visual_actor"), ToJsonStringArray({
			TEXT("Call blueprint_create_primitive_actor for an actor Blueprint built from engine primitive meshes, for example a dummy tree from a cylinder and a sphere."),
			TEXT("Or build it step by step: blueprint_create, then blueprint_add_component with PrimitiveShape and MaterialPath."),
			TEXT("Call blueprint_compile."),
			TEXT("Place it with editor_place_actor and AllowCurrentLevel=true, then look at it with editor_capture_viewport."),
		}));
		Workflows->SetArrayField(TEXT("guarded_editor_actor_placement"), ToJsonStringArray({
			TEXT("Call editor_get_world_status to see the current editor world and its placement guard rails."),
			TEXT("Call editor_place_actor with AllowCurrentLevel=true; every placed actor is tagged for later cleanup."),
			TEXT("Adjust with editor_set_actor_transform or editor_set_component_transform and read back with editor_read_level_actors."),
			TEXT("Remove test actors with editor_cleanup_repro_actors, with DryRun=true first to see what would go."),
		}));
		Workflows->SetArrayField(TEXT("visual_editor_qa"), ToJsonStringArray({
			TEXT("Select the target with editor_select_actor, or name it in ActorNameOrLabel."),
			TEXT("Call editor_capture_viewport to save a PNG and read the target actor and component bounds."),
			TEXT("Adjust with editor_set_actor_transform or editor_set_component_transform and capture again."),
		}));
		Workflows->SetArrayField(TEXT("pcg_discovery_before_forest_repro"), ToJsonStringArray({
			TEXT("Call pcg_get_status first; when PCG is unavailable, report its next_steps instead of changing the level."),
			TEXT("Create the forest graph and actor with pcg_create_forest_repro and pcg_place_forest_actor, and check the graph with pcg_inspect_graph."),
			TEXT("Call pcg_generate, then pcg_inspect_generated to see what was produced."),
		}));
		Workflows->SetArrayField(TEXT("pcg_road_city_discovery"), ToJsonStringArray({
			TEXT("Call pcg_get_status and pcg_get_road_capabilities."),
			TEXT("Use pcg_run_city_layout_recipe for grid cities and pcg_update_city_layout_recipe to make them bigger or denser."),
			TEXT("Use pcg_run_road_recipe for a straight road strip or pcg_run_spline_road_proof for spline-rectangle road bounds; true curved spline sampling is unsupported."),
		}));
		Workflows->SetArrayField(TEXT("pcg_forest_video_demo_recipe"), ToJsonStringArray({
			TEXT("Call pcg_get_status."),
			TEXT("Call pcg_run_forest_recipe for a one-call forest in the current editor world."),
			TEXT("Adjust size, density or naturalness with pcg_update_forest_recipe."),
			TEXT("Frame and capture the result with editor_capture_viewport."),
		}));
		Workflows->SetArrayField(TEXT("batch_authoring"), ToJsonStringArray({
			TEXT("Use blueprint_run_recipe for multi-step Blueprint edits; later steps take earlier results as $StepId.path.to.field."),
			TEXT("Use data_asset_create_batch for several Data Asset instances, with ContinueOnError=true to go on past a failed item."),
			TEXT("Both run in order without rollback: read the per-step results before retrying anything."),
		}));
		Workflows->SetArrayField(TEXT("minimal_material_authoring"), ToJsonStringArray({
			TEXT("Call material_resolve_expression_class or material_find_expression_classes to get canonical expression classes."),
			TEXT("Call material_create, then material_add_expression for each allowlisted expression."),
			TEXT("Fix properties with material_set_expression_property; wire with material_connect_expressions and material_connect_root."),
			TEXT("Call material_update and check the returned material readback."),
		}));
		return Workflows;
	}
}

const TArray<ZorvekMCPBridgeDiscoveryTools::FCapability>& ZorvekMCPBridgeDiscoveryTools::GetCapabilities()
{
	// Grouped by subsystem; the unsupported ids stand beside the features they border.
	static const TArray<FCapability> Capabilities = {
		// Discovery and routing.
		{TEXT("bridge_status_reporting"), true},
		{TEXT("capability_manifest"), true},
		{TEXT("task_tool_routing"), true},
		{TEXT("support_contact_guidance"), true},
		{TEXT("unsupported_boundary_reporting"), true},
		// MCP endpoint.
		{TEXT("local_mcp_http_endpoint"), true},
		{TEXT("loopback_only_binding"), true},
		{TEXT("automatic_port_fallback"), true},
		{TEXT("jsonrpc_mcp_methods"), true},
		{TEXT("full_tool_catalogue_listing"), true},
		{TEXT("case_insensitive_tool_dispatch"), true},
		// Bridge host in the editor.
		{TEXT("bridge_auto_start"), true},
		{TEXT("bridge_console_commands"), true},
		{TEXT("bridge_tools_menu"), true},
		{TEXT("bridge_preferences_page"), true},
		// AI client setup.
		{TEXT("ai_client_setup_snippets"), true},
		{TEXT("client_config_writer_with_backup"), true},
		{TEXT("codex_mcp_setup"), true},
		{TEXT("gemini_cli_mcp_setup"), true},
		{TEXT("antigravity_mcp_setup"), true},
		{TEXT("claude_code_mcp_setup"), true},
		{TEXT("cursor_mcp_setup"), true},
		{TEXT("rider_mcp_setup"), true},
		{TEXT("bob_local_mcp_setup"), true},
		{TEXT("bob_direct_mcp_verified"), true},
		{TEXT("bob_coordinator_required"), false},
		{TEXT("jules_async_workflow_guidance"), true},
		{TEXT("jules_task_packet_template"), true},
		{TEXT("jules_local_validation_packet"), true},
		{TEXT("jules_direct_mcp_verified"), false},
		{TEXT("jules_direct_localhost_access"), false},
		{TEXT("zorvek_hosted_relay"), false},
		{TEXT("existing_direct_mcp_clients_unchanged"), true},
		// Asset resolution, generic inspection and the specialised readers.
		{TEXT("asset_name_resolution"), true},
		{TEXT("generic_asset_inspection"), true},
		{TEXT("generic_asset_property_readback"), true},
		{TEXT("generic_asset_reference_readback"), true},
		{TEXT("gameplay_camera_asset_inspection"), true},
		{TEXT("gameplay_camera_rig_inspection"), true},
		{TEXT("state_tree_asset_inspection"), true},
		{TEXT("camera_state_tree_fixture_assets"), true},
		{TEXT("gameplay_camera_asset_editing"), false},
		{TEXT("state_tree_asset_editing"), false},
		{TEXT("edit_camera_assets"), false},
		// Data Assets.
		{TEXT("data_asset_class_discovery"), true},
		{TEXT("data_asset_instance_creation"), true},
		{TEXT("data_asset_property_editing"), true},
		{TEXT("data_asset_nested_struct_property_editing"), true},
		{TEXT("data_asset_batch_creation"), true},
		{TEXT("data_asset_save_control"), true},
		{TEXT("data_asset_array_map_property_editing"), false},
		// Materials.
		{TEXT("material_asset_inspection"), true},
		{TEXT("material_creation"), true},
		{TEXT("material_expression_class_discovery"), true},
		{TEXT("material_expression_class_resolution"), true},
		{TEXT("material_expression_authoring"), true},
		{TEXT("material_expression_property_editing"), true},
		{TEXT("material_expression_connections"), true},
		{TEXT("material_root_input_connections"), true},
		{TEXT("material_update_readback"), true},
		{TEXT("material_fixture_assets"), true},
		{TEXT("material_graph_editing"), false},
		// Blueprints.
		{TEXT("blueprint_project_search"), true},
		{TEXT("blueprint_graph_reading"), true},
		{TEXT("blueprint_creation"), true},
		{TEXT("blueprint_interface_creation"), true},
		{TEXT("blueprint_variable_authoring"), true},
		{TEXT("blueprint_container_variable_types"), true},
		{TEXT("blueprint_component_authoring"), true},
		{TEXT("blueprint_component_motion"), true},
		{TEXT("blueprint_dynamic_material_parameter_update"), true},
		{TEXT("blueprint_function_authoring"), true},
		{TEXT("blueprint_event_graph_creation"), true},
		{TEXT("blueprint_interface_implementation"), true},
		{TEXT("blueprint_interface_events"), true},
		{TEXT("blueprint_custom_events"), true},
		{TEXT("blueprint_comment_boxes"), true},
		{TEXT("blueprint_compile_diagnostics"), true},
		{TEXT("blueprint_node_spawner_search"), true},
		{TEXT("blueprint_node_spawner_resolution"), true},
		{TEXT("blueprint_node_placement"), true},
		{TEXT("blueprint_node_positioning"), true},
		{TEXT("blueprint_node_connection"), true},
		{TEXT("blueprint_search_and_connect_nodes"), true},
		{TEXT("blueprint_recipe_runner"), true},
		{TEXT("blueprint_primitive_actor_generation"), true},
		{TEXT("blueprint_road_actor_generation"), true},
		{TEXT("blueprint_intersection_actor_generation"), true},
		{TEXT("blueprint_skyscraper_actor_generation"), true},
		// Editor world.
		{TEXT("editor_world_status"), true},
		{TEXT("editor_actor_placement"), true},
		{TEXT("editor_placement_opt_in_guard"), true},
		{TEXT("editor_repro_actor_tagging"), true},
		{TEXT("editor_actor_transform_editing"), true},
		{TEXT("editor_component_transform_editing"), true},
		{TEXT("editor_level_actor_readback"), true},
		{TEXT("editor_actor_selection"), true},
		{TEXT("editor_repro_actor_cleanup"), true},
		{TEXT("editor_viewport_capture"), true},
		// PCG.
		{TEXT("pcg_availability_probe"), true},
		{TEXT("pcg_status_manifest"), true},
		{TEXT("pcg_road_capabilities"), true},
		{TEXT("pcg_spline_bounds_actors"), true},
		{TEXT("pcg_forest_repro_graph"), true},
		{TEXT("pcg_forest_actor_placement"), true},
		{TEXT("pcg_graph_inspection"), true},
		{TEXT("pcg_forest_bounds_controls"), true},
		{TEXT("pcg_generation_request"), true},
		{TEXT("pcg_generated_output_inspection"), true},
		{TEXT("pcg_visual_repro_output"), true},
		{TEXT("pcg_forest_recipe"), true},
		{TEXT("pcg_forest_recipe_update"), true},
		{TEXT("pcg_road_recipe"), true},
		{TEXT("pcg_spline_road_proof"), true},
		{TEXT("pcg_city_layout_recipe"), true},
		{TEXT("pcg_city_layout_update"), true},
		{TEXT("pcg_multiclass_spawn_proof"), true},
		{TEXT("pcg_spline_road_sampling"), false},
		{TEXT("pcg_arbitrary_road_network_editing"), false},
		{TEXT("pcg_arbitrary_volume_bounds_controls"), false},
		{TEXT("pcg_true_multi_class_spawn"), false},
		{TEXT("pcg_graph_editing"), false},
		// Vessa extensions.
		{TEXT("vessa_extension_discovery"), true},
		{TEXT("vessa_extension_search"), true},
		{TEXT("vessa_extension_details"), true},
		{TEXT("vessa_query_calls"), true},
		{TEXT("vessa_action_calls_with_undo"), true},
		{TEXT("vessa_blueprint_extensions"), true},
		// Outside the bridge's reach.
		{TEXT("enhanced_input_assets"), false},
		{TEXT("input_mapping_context_assets"), false},
		{TEXT("run_pie"), false},
	};
	return Capabilities;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDiscoveryTools::BuildCapabilityManifest()
{
	TSharedPtr<FJsonObject> Manifest = MakeShared<FJsonObject>();
	Manifest->SetStringField(TEXT("manifest_version"), TEXT("2026-07-07"));
	Manifest->SetStringField(TEXT("bridge"), TEXT("ZorvekMCPBridge"));
	Manifest->SetStringField(TEXT("backend"), TEXT("native_unreal_editor"));
	Manifest->SetStringField(TEXT("purpose"), TEXT("Authoritative capability matrix for agents. Use this before inferring limitations from a partial or lazily exposed tool list."));
	Manifest->SetObjectField(TEXT("support_contact"), BuildSupportContact());
	Manifest->SetArrayField(TEXT("key_tools"), ToJsonStringArray({
		TEXT("unreal_get_status"), TEXT("unreal_get_capabilities"), TEXT("unreal_recommend_tools"),
		TEXT("unreal_resolve_asset"), TEXT("unreal_inspect_asset"),
		TEXT("data_asset_find_classes"), TEXT("data_asset_create"), TEXT("data_asset_set_property"), TEXT("data_asset_create_batch"),
		TEXT("editor_get_world_status"), TEXT("editor_place_actor"), TEXT("editor_read_level_actors"), TEXT("editor_capture_viewport"),
		TEXT("pcg_get_status"), TEXT("pcg_run_forest_recipe"), TEXT("pcg_run_city_layout_recipe"), TEXT("pcg_generate"), TEXT("pcg_inspect_generated"),
		TEXT("material_find_expression_classes"), TEXT("material_resolve_expression_class"), TEXT("material_create"), TEXT("material_add_expression"),
		TEXT("material_connect_expressions"), TEXT("material_connect_root"),
		TEXT("blueprint_search_project"), TEXT("blueprint_read_graph"), TEXT("blueprint_find_node_spawners"), TEXT("blueprint_resolve_node_spawner"),
		TEXT("blueprint_add_node"), TEXT("blueprint_connect_nodes"), TEXT("blueprint_add_node_by_search_and_connect"), TEXT("blueprint_compile"),
		TEXT("blueprint_run_recipe"),
	}));
	Manifest->SetObjectField(TEXT("feature_matrix"), BuildFeatureMatrix());
	Manifest->SetObjectField(TEXT("recommended_discovery_flow"), BuildDiscoveryFlow());
	Manifest->SetObjectField(TEXT("preferred_workflows"), BuildPreferredWorkflows());
	Manifest->SetArrayField(TEXT("known_unsupported"), ToJsonStringArray({
		TEXT("Enhanced Input asset editing"),
		TEXT("Input Mapping Context asset editing"),
		TEXT("Material graph editing"),
		TEXT("PCG arbitrary/freeform spline forest area sampling"),
		TEXT("PCG arbitrary volume-shaped forest bounds"),
		TEXT("Data Asset array/map indexed property editing"),
		TEXT("Saving/opening arbitrary user maps without explicit current-level opt-in"),
		TEXT("PIE/game execution control"),
		TEXT("Camera asset editing"),
	}));
	return Manifest;
}
