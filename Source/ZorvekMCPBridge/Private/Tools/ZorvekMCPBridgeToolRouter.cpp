// unreal_recommend_tools: a keyword router from a task text to domains, tools, first steps and
// known unsupported boundaries. Rules are plain keyword groups on purpose, so that an agent
// (and a person reading Docs/Capabilities.md) can predict every answer.
#include "Tools/ZorvekMCPBridgeDiscoveryTools.h"

#include "Dom/JsonValue.h"

namespace
{
	const TCHAR* const BlueprintWords[] = {
		TEXT("blueprint"), TEXT("graph"), TEXT("node"), TEXT("actor"), TEXT("component"), TEXT("variable"), TEXT("event"),
		TEXT("function"), TEXT("interface"), TEXT("input"), TEXT("overlap"), TEXT("compile"), TEXT("recipe"), TEXT("tree"),
		TEXT("forest"), TEXT("primitive actor"), TEXT("visual actor")};
	// Visible stand-ins (a dummy tree, a cylinder) that the primitive actor generator builds.
	const TCHAR* const PrimitiveActorWords[] = {
		TEXT("tree"), TEXT("primitive actor"), TEXT("visual actor"), TEXT("dummy tree"), TEXT("cylinder"), TEXT("sphere")};
	const TCHAR* const EditorWorldWords[] = {
		TEXT("place actor"), TEXT("place the actor"), TEXT("level placement"), TEXT("map editing"), TEXT("spawn in level"),
		TEXT("add to level"), TEXT("editor world"), TEXT("viewport"), TEXT("screenshot"), TEXT("capture"), TEXT("visual inspect"),
		TEXT("visual qa")};
	const TCHAR* const PcgWords[] = {
		TEXT("procedural content"), TEXT("forest"), TEXT("scatter"), TEXT("generate foliage"), TEXT("road"), TEXT("roads"),
		TEXT("street"), TEXT("streets"), TEXT("city"), TEXT("city layout"), TEXT("skyscraper"), TEXT("block"), TEXT("intersection")};
	// The PCG words that ask for roads and cities rather than forests.
	const TCHAR* const RoadCityWords[] = {
		TEXT("road"), TEXT("roads"), TEXT("street"), TEXT("streets"), TEXT("city"), TEXT("city layout"), TEXT("skyscraper"),
		TEXT("block"), TEXT("intersection")};
	const TCHAR* const MaterialWords[] = {
		TEXT("material"), TEXT("shader"), TEXT("texture"), TEXT("emissive"), TEXT("roughness"), TEXT("base color"), TEXT("basecolor"),
		TEXT("normal"), TEXT("scalar parameter"), TEXT("vector parameter"), TEXT("power"), TEXT("panner"), TEXT("lerp")};
	const TCHAR* const AuthoringWords[] = {
		TEXT("create"), TEXT("write"), TEXT("edit"), TEXT("wire"), TEXT("connect"), TEXT("change"), TEXT("build"), TEXT("compile"),
		TEXT("author")};
	const TCHAR* const SearchWords[] = {
		TEXT("search"), TEXT("find"), TEXT("example"), TEXT("examples"), TEXT("project context"), TEXT("usage"), TEXT("reference"),
		TEXT("pseudocode"), TEXT("overview"), TEXT("comments"), TEXT("metadata")};
	const TCHAR* const InspectionWords[] = {
		TEXT("inspect"), TEXT("read"), TEXT("asset"), TEXT("statetree"), TEXT("state tree"), TEXT("camera asset"), TEXT("camera rig"),
		TEXT("data asset"), TEXT("uobject")};
	const TCHAR* const DataAssetWords[] = {
		TEXT("data asset"), TEXT("data assets"), TEXT("primary data asset"), TEXT("primarydataasset"), TEXT("uprimarydataasset"),
		TEXT("itemsummary")};
	const TCHAR* const OnboardingWords[] = {
		TEXT("connect ai"), TEXT("onboarding"), TEXT("codex"), TEXT("gemini"), TEXT("antigravity"), TEXT("claude"), TEXT("cursor"),
		TEXT("rider"), TEXT("ibm bob"), TEXT("jules"), TEXT("google jules"), TEXT("mcp setup"), TEXT("assistant")};
	const TCHAR* const BobWords[] = {TEXT("ibm bob")};
	const TCHAR* const JulesWords[] = {TEXT("jules"), TEXT("google jules")};
	const TCHAR* const ExtensionWords[] = {TEXT("vessa"), TEXT("extension"), TEXT("workflow skill")};
	const TCHAR* const ReadingWords[] = {
		TEXT("inspect"), TEXT("read"), TEXT("explain"), TEXT("pseudocode"), TEXT("inventory"), TEXT("overview")};
	const TCHAR* const DynamicMaterialWords[] = {TEXT("dynamic material"), TEXT("material parameter")};
	const TCHAR* const SplineWords[] = {TEXT("spline")};

	struct FUnsupportedBoundary
	{
		const TCHAR* CapabilityId;
		TArray<const TCHAR*> Keywords;
	};

	const TArray<FUnsupportedBoundary>& GetUnsupportedBoundaries()
	{
		static const TArray<FUnsupportedBoundary> Boundaries = {
			{TEXT("run_pie"), {TEXT("play in editor"), TEXT("run game"), TEXT("simulate"), TEXT("runtime test")}},
			{TEXT("enhanced_input_assets"), {TEXT("enhanced input asset"), TEXT("input action asset")}},
			{TEXT("input_mapping_context_assets"), {TEXT("input mapping context"), TEXT("imc_")}},
			{TEXT("broad_material_graph_editing"), {TEXT("material graph editing all nodes"), TEXT("arbitrary material nodes")}},
		};
		return Boundaries;
	}

	class FRoutingText
	{
	public:
		explicit FRoutingText(const FString& Text)
			: Normalized(ZorvekMCPBridgeDiscoveryTools::NormalizeRoutingText(Text))
		{
		}

		bool Matches(const TCHAR* Keyword) const
		{
			return Normalized.Contains(ZorvekMCPBridgeDiscoveryTools::NormalizeRoutingText(Keyword), ESearchCase::CaseSensitive);
		}

		template <int32 Count>
		bool MatchesAny(const TCHAR* const (&Keywords)[Count]) const
		{
			for (const TCHAR* Keyword : Keywords)
			{
				if (Matches(Keyword))
				{
					return true;
				}
			}
			return false;
		}

		bool MatchesAny(const TArray<const TCHAR*>& Keywords) const
		{
			return Keywords.ContainsByPredicate([this](const TCHAR* Keyword) { return Matches(Keyword); });
		}

	private:
		FString Normalized;
	};

	// Collects the answer; every list keeps its first-added order and never repeats an entry.
	struct FRecommendation
	{
		TArray<FString> MatchedDomains;
		TArray<FString> RelevantTools;
		TArray<FString> PossiblyRelevantTools;
		TArray<FString> FirstSteps;
		TArray<FString> UnsupportedBoundaries;
		TArray<FString> Reasoning;

		void AddDomain(const TCHAR* Domain, const TCHAR* Reason)
		{
			MatchedDomains.AddUnique(Domain);
			Reasoning.AddUnique(Reason);
		}

		void AddRelevant(std::initializer_list<const TCHAR*> Tools)
		{
			for (const TCHAR* Tool : Tools)
			{
				RelevantTools.AddUnique(Tool);
			}
		}

		// Tools of a matched domain for an intent the task did not show.
		void AddPossiblyRelevant(std::initializer_list<const TCHAR*> Tools)
		{
			for (const TCHAR* Tool : Tools)
			{
				PossiblyRelevantTools.AddUnique(Tool);
			}
		}

		void AddStep(const FString& Step)
		{
			FirstSteps.AddUnique(Step);
		}

		void AddBoundary(const TCHAR* CapabilityId)
		{
			UnsupportedBoundaries.AddUnique(CapabilityId);
		}
	};

	// Tool names compare exactly; FString equality would ignore case.
	void RemoveTools(TArray<FString>& Tools, const TArray<FString>& ToolsToRemove)
	{
		Tools.RemoveAll([&ToolsToRemove](const FString& Tool)
		{
			return ToolsToRemove.ContainsByPredicate([&Tool](const FString& Other) { return Other.Equals(Tool, ESearchCase::CaseSensitive); });
		});
	}
}

FString ZorvekMCPBridgeDiscoveryTools::NormalizeRoutingText(const FString& Text)
{
	FString Normalized = Text.ToLower();
	for (const TCHAR* Separator : {TEXT(" "), TEXT("_"), TEXT("-"), TEXT("("), TEXT(")")})
	{
		Normalized.ReplaceInline(Separator, TEXT(""), ESearchCase::CaseSensitive);
	}
	return Normalized;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDiscoveryTools::BuildToolRecommendation(const FString& Task, const FString& Domain, const FString& Intent, const FString& AssetType)
{
	const FRoutingText Text(FString::Printf(TEXT("%s %s %s %s"), *Task, *Domain, *Intent, *AssetType));
	const bool bAuthoring = Text.MatchesAny(AuthoringWords);
	const bool bSearch = Text.MatchesAny(SearchWords);
	const bool bReading = Text.MatchesAny(ReadingWords);

	FRecommendation Route;

	if (bSearch && !bAuthoring)
	{
		Route.AddDomain(TEXT("project_search"), TEXT("Task includes search/find/example/context language."));
		Route.AddRelevant({TEXT("blueprint_search_project"), TEXT("unreal_inspect_asset"), TEXT("blueprint_read_graph")});
		Route.AddStep(TEXT("Call blueprint_search_project with the user's query and package paths, then follow result recommended_next_tools."));
	}

	if (Text.MatchesAny(DataAssetWords))
	{
		Route.AddDomain(TEXT("data_asset"), TEXT("Task includes Data Asset / Primary Data Asset / PDA language."));
		Route.AddRelevant({TEXT("data_asset_find_classes")});
		if (bAuthoring)
		{
			Route.AddRelevant({TEXT("data_asset_create"), TEXT("data_asset_set_property"), TEXT("data_asset_create_batch")});
		}
		else
		{
			Route.AddPossiblyRelevant({TEXT("data_asset_create"), TEXT("data_asset_set_property"), TEXT("data_asset_create_batch")});
		}
		Route.AddRelevant({TEXT("unreal_resolve_asset"), TEXT("unreal_inspect_asset"), TEXT("blueprint_search_project")});
		Route.AddStep(TEXT("Call data_asset_find_classes to discover the exact Data Asset / Primary Data Asset classes, then use data_asset_create_batch for multi-asset requests or data_asset_create plus data_asset_set_property for single assets. Do not use blueprint_create as a Data Asset instance workaround."));
		if (bAuthoring)
		{
			Route.AddBoundary(TEXT("data_asset_array_map_property_editing"));
		}
	}

	if (Text.MatchesAny(MaterialWords))
	{
		Route.AddDomain(TEXT("material"), TEXT("Task includes material/shader/texture/expression language."));
		if (bAuthoring)
		{
			Route.AddRelevant({TEXT("material_find_expression_classes"), TEXT("material_resolve_expression_class"), TEXT("material_create"),
				TEXT("material_add_expression"), TEXT("material_set_expression_property"), TEXT("material_connect_expressions"),
				TEXT("material_connect_root"), TEXT("material_update"), TEXT("unreal_inspect_asset")});
			Route.AddPossiblyRelevant({TEXT("blueprint_search_project")});
			Route.AddStep(TEXT("Resolve expression classes before adding material expressions; use material_set_expression_property for post-create reflected property fixes."));
		}
		else
		{
			Route.AddRelevant({TEXT("unreal_inspect_asset"), TEXT("blueprint_search_project"), TEXT("material_find_expression_classes")});
			Route.AddPossiblyRelevant({TEXT("material_resolve_expression_class"), TEXT("material_create"), TEXT("material_add_expression"),
				TEXT("material_set_expression_property"), TEXT("material_connect_expressions"), TEXT("material_connect_root"),
				TEXT("material_update")});
			Route.AddStep(TEXT("Use unreal_inspect_asset for direct material readback, or blueprint_search_project to find material examples project-wide."));
		}
	}

	if (Text.MatchesAny(BlueprintWords))
	{
		Route.AddDomain(TEXT("blueprint"), TEXT("Task includes Blueprint graph/node/actor/component/event language."));
		const std::initializer_list<const TCHAR*> ReadingTools = {TEXT("blueprint_search_project"), TEXT("blueprint_read_graph"), TEXT("unreal_inspect_asset")};
		if (bSearch || bReading)
		{
			Route.AddRelevant(ReadingTools);
			Route.AddStep(TEXT("Search or inspect first, then read the exact graph_name from available_graphs before making conclusions."));
		}
		else
		{
			Route.AddPossiblyRelevant(ReadingTools);
		}
		const std::initializer_list<const TCHAR*> AuthoringTools = {TEXT("blueprint_create"), TEXT("blueprint_create_primitive_actor"),
			TEXT("blueprint_resolve_node_spawner"), TEXT("blueprint_add_node"), TEXT("blueprint_connect_nodes"), TEXT("blueprint_add_comment"),
			TEXT("blueprint_compile"), TEXT("blueprint_run_recipe"), TEXT("blueprint_add_node_by_search_and_connect")};
		if (bAuthoring)
		{
			Route.AddRelevant(AuthoringTools);
			if (Text.MatchesAny(DynamicMaterialWords))
			{
				Route.AddRelevant({TEXT("blueprint_add_dynamic_material_parameter_update")});
			}
			Route.AddStep(TEXT("Prefer canonical spawner IDs via blueprint_resolve_node_spawner, then add/connect/compile and verify with blueprint_read_graph."));
		}
		else
		{
			Route.AddPossiblyRelevant(AuthoringTools);
		}
	}

	if (Text.MatchesAny(PrimitiveActorWords))
	{
		// Such a stand-in is one generator call, then a guarded placement and a look at it.
		Route.AddPossiblyRelevant({TEXT("blueprint_create_primitive_actor"), TEXT("editor_place_actor"), TEXT("editor_capture_viewport")});
	}

	if (Text.MatchesAny(EditorWorldWords))
	{
		Route.AddDomain(TEXT("editor_world"), TEXT("Task includes editor-world actor placement language."));
		Route.AddRelevant({TEXT("editor_get_world_status"), TEXT("editor_place_actor"), TEXT("editor_read_level_actors"),
			TEXT("editor_set_actor_transform"), TEXT("editor_set_component_transform"), TEXT("editor_select_actor"),
			TEXT("editor_cleanup_repro_actors"), TEXT("editor_capture_viewport")});
		Route.AddStep(TEXT("Call editor_get_world_status, then editor_place_actor with AllowCurrentLevel=true for explicit current-level mutation."));
	}

	if (Text.MatchesAny(PcgWords))
	{
		Route.AddDomain(TEXT("pcg"), TEXT("Task includes PCG/procedural forest/scatter language."));
		Route.AddRelevant({TEXT("pcg_get_status"), TEXT("pcg_get_road_capabilities"), TEXT("blueprint_create_road_actor"),
			TEXT("blueprint_create_intersection_actor"), TEXT("blueprint_create_skyscraper_actor"), TEXT("pcg_create_forest_repro"),
			TEXT("pcg_place_forest_actor"), TEXT("pcg_inspect_graph"), TEXT("pcg_set_forest_bounds"), TEXT("pcg_generate"),
			TEXT("pcg_inspect_generated"), TEXT("pcg_run_forest_recipe"), TEXT("pcg_run_road_recipe"), TEXT("pcg_run_spline_road_proof"),
			TEXT("pcg_run_city_layout_recipe"), TEXT("pcg_update_city_layout_recipe"), TEXT("pcg_update_forest_recipe"),
			TEXT("pcg_multiclass_spawn_proof"), TEXT("pcg_create_visual_repro_output")});
		const std::initializer_list<const TCHAR*> SplineTools = {TEXT("pcg_create_spline_bounds_actor"), TEXT("pcg_inspect_spline_bounds_actor"), TEXT("pcg_set_spline_bounds_actor")};
		if (Text.MatchesAny(SplineWords))
		{
			Route.AddRelevant(SplineTools);
		}
		else
		{
			Route.AddPossiblyRelevant(SplineTools);
		}
		Route.AddStep(Text.MatchesAny(RoadCityWords)
			? TEXT("Call pcg_get_status and pcg_get_road_capabilities, then use pcg_run_city_layout_recipe for grid cities, pcg_update_city_layout_recipe for make-it-bigger/denser updates, pcg_run_road_recipe for a straight road strip, or pcg_run_spline_road_proof for spline-rectangle road bounds. True curved spline sampling remains unsupported.")
			: TEXT("Call pcg_get_status first, then prefer pcg_run_forest_recipe for a one-call forest workflow or pcg_update_forest_recipe for resize/density/naturalness adjustments."));
	}

	if (Text.MatchesAny(InspectionWords))
	{
		Route.AddDomain(TEXT("asset_inspection"), TEXT("Task asks to inspect/read non-Blueprint or generic UObject assets."));
		Route.AddRelevant({TEXT("unreal_resolve_asset"), TEXT("unreal_inspect_asset")});
		Route.AddStep(TEXT("Resolve the asset if needed, then call unreal_inspect_asset and honor partial_failures/inspectability fields."));
	}

	if (Text.MatchesAny(OnboardingWords))
	{
		Route.AddDomain(TEXT("onboarding"), TEXT("Task mentions AI client connection/setup."));
		Route.AddRelevant({TEXT("unreal_get_status"), TEXT("unreal_get_capabilities"), TEXT("unreal_recommend_tools")});
		if (Text.MatchesAny(BobWords))
		{
			Route.AddStep(TEXT("For IBM Bob, use Tools > Zorvek MCP Bridge > Connect AI Assistant... and copy the IBM Bob manual setup snippet for the existing local MCP endpoint. Then ask Bob to call unreal_get_status, unreal_get_capabilities, and unreal_recommend_tools with the user's task before deciding what Zorvek can do. If Bob sees a partial tool list, search/list tools again before saying Zorvek cannot do something. Existing direct MCP clients remain unchanged."));
		}
		if (Text.MatchesAny(JulesWords))
		{
			Route.AddStep(TEXT("For Google Jules, use Tools > Zorvek MCP Bridge > Connect AI Assistant... and copy the Jules task packet. Jules should make GitHub/repository changes only, then hand a local validation packet to an Unreal-capable agent that calls unreal_get_status, unreal_get_capabilities, and unreal_recommend_tools. Jules should not assume it can reach the user's 127.0.0.1 Unreal endpoint directly; no Zorvek-hosted relay is provided."));
			Route.AddBoundary(TEXT("jules_direct_localhost_access"));
			Route.AddBoundary(TEXT("zorvek_hosted_relay"));
		}
		Route.AddStep(TEXT("Use Tools > Zorvek MCP Bridge > Connect AI Assistant... in the Unreal Editor for client setup; MCP can report endpoint/status but config writes are editor UI driven."));
	}

	if (Text.MatchesAny(ExtensionWords))
	{
		Route.AddDomain(TEXT("vessa_extensions"), TEXT("Task mentions Vessa extensions/workflows."));
		Route.AddRelevant({TEXT("vessa_list_extensions"), TEXT("vessa_search_extensions"), TEXT("vessa_get_extension_details"),
			TEXT("vessa_call_query"), TEXT("vessa_call_action")});
		Route.AddStep(TEXT("List or search Vessa extensions, inspect extension details, then call explicit query/action names."));
	}

	for (const FUnsupportedBoundary& Boundary : GetUnsupportedBoundaries())
	{
		if (Text.MatchesAny(Boundary.Keywords))
		{
			Route.AddBoundary(Boundary.CapabilityId);
		}
	}
	if (!Route.UnsupportedBoundaries.IsEmpty())
	{
		Route.AddStep(TEXT("Do not fake unsupported work; report the boundary and complete the supported adjacent inspection/authoring steps."));
		Route.AddStep(FString(TEXT("Ask the user to report the blocked part of the task to the maker of Zorvek MCP Bridge with support_contact.message_template. ")) + DescribeSupportChannels());
	}

	if (Route.MatchedDomains.IsEmpty())
	{
		Route.AddDomain(TEXT("broad"), TEXT("No specific domain matched with high confidence."));
		Route.AddRelevant({TEXT("unreal_get_capabilities"), TEXT("unreal_resolve_asset"), TEXT("unreal_inspect_asset"), TEXT("blueprint_search_project")});
		Route.AddStep(TEXT("Start with capabilities, resolve/inspect known assets, and use project search before filesystem scraping."));
	}

	// A tool another matched domain already recommends is not "possibly" relevant.
	RemoveTools(Route.PossiblyRelevantTools, Route.RelevantTools);

	const FString PrimaryDomain = Route.MatchedDomains[0];
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetStringField(TEXT("task"), Task);
	Payload->SetStringField(TEXT("domain_hint"), Domain);
	Payload->SetStringField(TEXT("intent_hint"), Intent);
	Payload->SetStringField(TEXT("asset_type_hint"), AssetType);
	Payload->SetStringField(TEXT("primary_domain"), PrimaryDomain);
	Payload->SetArrayField(TEXT("matched_domains"), ZorvekMCPBridgeDiscoveryTools::ToJsonStringArray(Route.MatchedDomains));
	Payload->SetArrayField(TEXT("relevant_tools"), ZorvekMCPBridgeDiscoveryTools::ToJsonStringArray(Route.RelevantTools));
	Payload->SetArrayField(TEXT("possibly_relevant_tools"), ZorvekMCPBridgeDiscoveryTools::ToJsonStringArray(Route.PossiblyRelevantTools));
	Payload->SetArrayField(TEXT("first_steps"), ZorvekMCPBridgeDiscoveryTools::ToJsonStringArray(Route.FirstSteps));
	Payload->SetArrayField(TEXT("unsupported_boundaries"), ZorvekMCPBridgeDiscoveryTools::ToJsonStringArray(Route.UnsupportedBoundaries));
	Payload->SetArrayField(TEXT("reasoning"), ZorvekMCPBridgeDiscoveryTools::ToJsonStringArray(Route.Reasoning));
	Payload->SetStringField(TEXT("confidence"), PrimaryDomain == TEXT("broad") ? TEXT("low") : TEXT("rule_based"));
	Payload->SetStringField(TEXT("agent_guidance"), TEXT("Use this route to focus tool discovery, not to infer that omitted tools are unavailable. Call unreal_get_capabilities for the full capability matrix. If a bridge limitation blocks the task, have the user report it as support_contact describes."));
	Payload->SetObjectField(TEXT("support_contact"), BuildSupportContact());
	Payload->SetStringField(TEXT("next_step"), TEXT("Call unreal_get_capabilities."));
	return Payload;
}
