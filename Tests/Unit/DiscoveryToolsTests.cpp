// The discovery tools: unreal_get_status, unreal_get_capabilities and the keyword router of
// unreal_recommend_tools.
#include "ZorvekTestSupport.h"

#include "Dom/JsonValue.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/EngineVersion.h"
#include "Server/ZorvekMCPBridgeServer.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeDiscoveryTools.h"

#include <regex>
#include <string>

namespace
{
	// Far from the endpoint's own range 8765-8789.
	constexpr uint16 StatusTestPort = 28765;

	bool ContainsExactly(const TArray<FString>& Strings, const FString& Wanted)
	{
		return Strings.ContainsByPredicate([&Wanted](const FString& String) { return String.Equals(Wanted, ESearchCase::CaseSensitive); });
	}

	bool HasDuplicates(const TArray<FString>& Strings)
	{
		for (int32 Index = 0; Index < Strings.Num(); ++Index)
		{
			for (int32 Other = Index + 1; Other < Strings.Num(); ++Other)
			{
				if (Strings[Index].Equals(Strings[Other], ESearchCase::CaseSensitive))
				{
					return true;
				}
			}
		}
		return false;
	}

	bool IsListedTool(const FString& Name)
	{
		const FZorvekMCPBridgeToolDefinition* Tool = ZorvekMCPBridgeTools::FindTool(Name);
		return Tool && Tool->bListed && Name.Equals(Tool->Name, ESearchCase::CaseSensitive);
	}

	// Every tool name written inside the sentences an agent reads must be a real tool.
	void ExpectMentionedToolsExist(const FString& Sentence)
	{
		static const std::regex ToolName("\\b(?:unreal|vessa|data_asset|editor|pcg|material|blueprint)_[a-z_]*[a-z]\\b");
		const std::string Text = UECompatToUtf8(Sentence);
		for (std::sregex_iterator Match(Text.begin(), Text.end(), ToolName), End; Match != End; ++Match)
		{
			const std::string Name = Match->str();
			EXPECT_TRUE(IsListedTool(UECompatFromUtf8(Name))) << Name << " in: " << Text;
		}
	}

	// Sets the support channel keys for one test and clears them again.
	class FSupportContactConfig
	{
	public:
		FSupportContactConfig(const TCHAR* Discord, const TCHAR* Email)
		{
			GConfig->SetString(ZorvekMCPBridgeDiscoveryTools::ConfigSection, ZorvekMCPBridgeDiscoveryTools::SupportDiscordConfigKey, Discord, GEngineIni);
			GConfig->SetString(ZorvekMCPBridgeDiscoveryTools::ConfigSection, ZorvekMCPBridgeDiscoveryTools::SupportEmailConfigKey, Email, GEngineIni);
		}

		~FSupportContactConfig()
		{
			GConfig->SetString(ZorvekMCPBridgeDiscoveryTools::ConfigSection, ZorvekMCPBridgeDiscoveryTools::SupportDiscordConfigKey, TEXT(""), GEngineIni);
			GConfig->SetString(ZorvekMCPBridgeDiscoveryTools::ConfigSection, ZorvekMCPBridgeDiscoveryTools::SupportEmailConfigKey, TEXT(""), GEngineIni);
		}
	};

	class FDiscoveryToolsTest : public ::testing::Test
	{
	protected:
		TSharedPtr<FJsonObject> CallStructured(const FString& ToolName, const TSharedPtr<FJsonObject>& Arguments = MakeShared<FJsonObject>())
		{
			const TSharedPtr<FJsonObject> Result = Server->ExecuteTool(ToolName, Arguments);
			if (!Result.IsValid() || Result->GetBoolField(TEXT("isError")) || !Result->HasField(TEXT("structuredContent")))
			{
				ADD_FAILURE() << UECompatToUtf8(ToolName) << " did not answer a structured success";
				return MakeShared<FJsonObject>();
			}
			return Result->GetObjectField(TEXT("structuredContent"));
		}

		TSharedPtr<FJsonObject> Recommend(const FString& Task, const FString& Domain = FString(), const FString& Intent = FString(), const FString& AssetType = FString())
		{
			TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
			Arguments->SetStringField(TEXT("Task"), Task);
			if (!Domain.IsEmpty())
			{
				Arguments->SetStringField(TEXT("Domain"), Domain);
			}
			if (!Intent.IsEmpty())
			{
				Arguments->SetStringField(TEXT("Intent"), Intent);
			}
			if (!AssetType.IsEmpty())
			{
				Arguments->SetStringField(TEXT("AssetType"), AssetType);
			}
			const TSharedPtr<FJsonObject> Route = CallStructured(TEXT("unreal_recommend_tools"), Arguments);
			ExpectWellFormedRoute(Route);
			return Route;
		}

		// Rules every route keeps, whatever the task.
		static void ExpectWellFormedRoute(const TSharedPtr<FJsonObject>& Route)
		{
			const TArray<FString> Relevant = JsonStringsOf(Route->GetArrayField(TEXT("relevant_tools")));
			const TArray<FString> Possibly = JsonStringsOf(Route->GetArrayField(TEXT("possibly_relevant_tools")));
			for (const TCHAR* Key : {TEXT("matched_domains"), TEXT("relevant_tools"), TEXT("possibly_relevant_tools"), TEXT("first_steps"), TEXT("unsupported_boundaries"), TEXT("reasoning")})
			{
				EXPECT_FALSE(HasDuplicates(JsonStringsOf(Route->GetArrayField(Key)))) << UECompatToUtf8(FString(Key));
			}
			for (const FString& Tool : Relevant)
			{
				EXPECT_TRUE(IsListedTool(Tool)) << UECompatToUtf8(Tool);
				EXPECT_FALSE(ContainsExactly(Possibly, Tool)) << UECompatToUtf8(Tool) << " is both relevant and possibly relevant";
			}
			for (const FString& Tool : Possibly)
			{
				EXPECT_TRUE(IsListedTool(Tool)) << UECompatToUtf8(Tool);
			}
			for (const FString& Step : JsonStringsOf(Route->GetArrayField(TEXT("first_steps"))))
			{
				ExpectMentionedToolsExist(Step);
			}
			const TArray<FString> Domains = JsonStringsOf(Route->GetArrayField(TEXT("matched_domains")));
			ASSERT_FALSE(Domains.IsEmpty());
			EXPECT_EQ(Route->GetStringField(TEXT("primary_domain")), Domains[0]);
			EXPECT_EQ(Route->GetArrayField(TEXT("reasoning")).Num(), Domains.Num());
		}

		static TArray<FString> Domains(const TSharedPtr<FJsonObject>& Route) { return JsonStringsOf(Route->GetArrayField(TEXT("matched_domains"))); }
		static TArray<FString> Relevant(const TSharedPtr<FJsonObject>& Route) { return JsonStringsOf(Route->GetArrayField(TEXT("relevant_tools"))); }
		static TArray<FString> Possibly(const TSharedPtr<FJsonObject>& Route) { return JsonStringsOf(Route->GetArrayField(TEXT("possibly_relevant_tools"))); }
		static TArray<FString> Steps(const TSharedPtr<FJsonObject>& Route) { return JsonStringsOf(Route->GetArrayField(TEXT("first_steps"))); }
		static TArray<FString> Boundaries(const TSharedPtr<FJsonObject>& Route) { return JsonStringsOf(Route->GetArrayField(TEXT("unsupported_boundaries"))); }
		static TArray<FString> Reasons(const TSharedPtr<FJsonObject>& Route) { return JsonStringsOf(Route->GetArrayField(TEXT("reasoning"))); }

		TSharedRef<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
	};

	const TCHAR* const BoundaryStep = TEXT("Do not fake unsupported work; report the boundary and complete the supported adjacent inspection/authoring steps.");
}

// --- unreal_get_status ---------------------------------------------------------------------

TEST_F(FDiscoveryToolsTest, StatusOfAStoppedBridge)
{
	const TSharedPtr<FJsonObject> Status = CallStructured(TEXT("unreal_get_status"));
	EXPECT_EQ(JsonKeysOf(Status), (TArray<FString>{TEXT("running"), TEXT("port"), TEXT("endpoint_url"), TEXT("unreal_version"), TEXT("standalone"), TEXT("backend"),
		TEXT("capabilities_endpoint"), TEXT("discovery_note"), TEXT("capabilities")}));
	EXPECT_FALSE(Status->GetBoolField(TEXT("running")));
	EXPECT_EQ(Status->GetNumberField(TEXT("port")), 0);
	EXPECT_EQ(Status->GetStringField(TEXT("endpoint_url")), TEXT("stopped"));
	// The full version, branch included: the host's branch names its simulated editor.
	EXPECT_EQ(Status->GetStringField(TEXT("unreal_version")), FEngineVersion::Current().ToString(EVersionComponent::Branch));
	EXPECT_EQ(Status->GetStringField(TEXT("unreal_version")), TEXT("5.7.0-0+ZorvekBridgeHost-SimulatedEditor"));
	EXPECT_TRUE(Status->GetBoolField(TEXT("standalone")));
	EXPECT_EQ(Status->GetStringField(TEXT("backend")), TEXT("native_unreal_editor"));
	EXPECT_EQ(Status->GetStringField(TEXT("capabilities_endpoint")), TEXT("unreal_get_capabilities"));
	EXPECT_EQ(Status->GetStringField(TEXT("discovery_note")), TEXT("Call unreal_get_capabilities before concluding a Zorvek Blueprint capability is unavailable. Some hosts expose MCP tools lazily."));
	EXPECT_EQ(ToCondensedJson(Status->GetObjectField(TEXT("capabilities"))), ToCondensedJson(ZorvekMCPBridgeDiscoveryTools::BuildCapabilityManifest()));
}

TEST_F(FDiscoveryToolsTest, StatusOfARunningBridgeAndItsUnlistedAlias)
{
	ASSERT_TRUE(Server->Start(StatusTestPort));
	const int32 Port = Server->GetPort();
	const TSharedPtr<FJsonObject> Status = CallStructured(TEXT("unreal_get_status"));
	const TSharedPtr<FJsonObject> AliasStatus = CallStructured(TEXT("vessa_get_status"));
	Server->Stop();

	EXPECT_TRUE(Status->GetBoolField(TEXT("running")));
	EXPECT_EQ(Status->GetNumberField(TEXT("port")), Port);
	EXPECT_EQ(Status->GetStringField(TEXT("endpoint_url")), FString::Printf(TEXT("http://127.0.0.1:%d/mcp"), Port));
	EXPECT_EQ(ToCondensedJson(AliasStatus), ToCondensedJson(Status));
	EXPECT_EQ(CallStructured(TEXT("unreal_get_status"))->GetStringField(TEXT("endpoint_url")), TEXT("stopped"));
}

// --- unreal_get_capabilities ---------------------------------------------------------------

TEST_F(FDiscoveryToolsTest, ManifestMembersAndFixedTexts)
{
	const TSharedPtr<FJsonObject> Manifest = CallStructured(TEXT("unreal_get_capabilities"));
	EXPECT_EQ(JsonKeysOf(Manifest), (TArray<FString>{TEXT("manifest_version"), TEXT("bridge"), TEXT("backend"), TEXT("purpose"), TEXT("support_contact"), TEXT("key_tools"),
		TEXT("feature_matrix"), TEXT("recommended_discovery_flow"), TEXT("preferred_workflows"), TEXT("known_unsupported")}));
	EXPECT_EQ(Manifest->GetStringField(TEXT("manifest_version")), TEXT("2026-07-07"));
	EXPECT_EQ(Manifest->GetStringField(TEXT("bridge")), TEXT("ZorvekMCPBridge"));
	EXPECT_EQ(Manifest->GetStringField(TEXT("backend")), TEXT("native_unreal_editor"));
	EXPECT_EQ(Manifest->GetStringField(TEXT("purpose")), TEXT("Authoritative capability matrix for agents. Use this before inferring limitations from a partial or lazily exposed tool list."));
	EXPECT_EQ(JsonStringsOf(Manifest->GetArrayField(TEXT("known_unsupported"))), (TArray<FString>{TEXT("Enhanced Input asset editing"), TEXT("Input Mapping Context asset editing"),
		TEXT("Material graph editing"), TEXT("PCG arbitrary/freeform spline forest area sampling"), TEXT("PCG arbitrary volume-shaped forest bounds"),
		TEXT("Data Asset array/map indexed property editing"), TEXT("Saving/opening arbitrary user maps without explicit current-level opt-in"),
		TEXT("PIE/game execution control"), TEXT("Camera asset editing")}));

	const TArray<FString> KeyTools = JsonStringsOf(Manifest->GetArrayField(TEXT("key_tools")));
	ASSERT_GE(KeyTools.Num(), 3);
	EXPECT_EQ(KeyTools[0], TEXT("unreal_get_status"));
	EXPECT_EQ(KeyTools[1], TEXT("unreal_get_capabilities"));
	EXPECT_EQ(KeyTools[2], TEXT("unreal_recommend_tools"));
	EXPECT_FALSE(HasDuplicates(KeyTools));
	for (const FString& Tool : KeyTools)
	{
		EXPECT_TRUE(IsListedTool(Tool)) << UECompatToUtf8(Tool);
	}
}

TEST_F(FDiscoveryToolsTest, FeatureMatrixHas131IdsAndExactlyTheKnownGapsAreFalse)
{
	const TSharedPtr<FJsonObject> Matrix = CallStructured(TEXT("unreal_get_capabilities"))->GetObjectField(TEXT("feature_matrix"));
	EXPECT_EQ(Matrix->Values.Num(), 131);

	const TArray<FString> ExpectedFalse = {
		TEXT("bob_coordinator_required"), TEXT("jules_direct_mcp_verified"), TEXT("jules_direct_localhost_access"), TEXT("zorvek_hosted_relay"),
		TEXT("pcg_spline_road_sampling"), TEXT("pcg_arbitrary_road_network_editing"), TEXT("pcg_arbitrary_volume_bounds_controls"), TEXT("pcg_true_multi_class_spawn"),
		TEXT("pcg_graph_editing"), TEXT("data_asset_array_map_property_editing"), TEXT("gameplay_camera_asset_editing"), TEXT("state_tree_asset_editing"),
		TEXT("material_graph_editing"), TEXT("enhanced_input_assets"), TEXT("input_mapping_context_assets"), TEXT("run_pie"), TEXT("edit_camera_assets")};
	TArray<FString> ActualFalse;
	TArray<FString> Ids;
	for (const auto& Pair : Matrix->Values)
	{
		Ids.Add(Pair.Key);
		ASSERT_EQ(Pair.Value->Type, EJson::Boolean) << UECompatToUtf8(Pair.Key);
		if (!Pair.Value->AsBool())
		{
			ActualFalse.Add(Pair.Key);
		}
		const std::string Id = UECompatToUtf8(Pair.Key);
		EXPECT_TRUE(std::regex_match(Id, std::regex("[a-z0-9]+(_[a-z0-9]+)*"))) << Id;
	}
	EXPECT_EQ(ActualFalse.Num(), ExpectedFalse.Num());
	for (const FString& Id : ExpectedFalse)
	{
		EXPECT_TRUE(ContainsExactly(ActualFalse, Id)) << UECompatToUtf8(Id);
	}

	for (const TCHAR* Id : {TEXT("blueprint_project_search"), TEXT("task_tool_routing"), TEXT("support_contact_guidance"), TEXT("unsupported_boundary_reporting"),
		TEXT("bob_local_mcp_setup"), TEXT("bob_direct_mcp_verified"), TEXT("jules_async_workflow_guidance"), TEXT("jules_task_packet_template"),
		TEXT("jules_local_validation_packet"), TEXT("existing_direct_mcp_clients_unchanged"), TEXT("generic_asset_inspection"), TEXT("generic_asset_property_readback"),
		TEXT("generic_asset_reference_readback"), TEXT("gameplay_camera_asset_inspection"), TEXT("gameplay_camera_rig_inspection"), TEXT("state_tree_asset_inspection")})
	{
		ASSERT_TRUE(ContainsExactly(Ids, Id)) << UECompatToUtf8(FString(Id));
		EXPECT_TRUE(Matrix->GetBoolField(Id)) << UECompatToUtf8(FString(Id));
	}
	// Each tool family has its own true capability ids.
	for (const TCHAR* Family : {TEXT("editor_"), TEXT("pcg_"), TEXT("data_asset_"), TEXT("material_"), TEXT("blueprint_")})
	{
		EXPECT_TRUE(Ids.ContainsByPredicate([&Matrix, Family](const FString& Id) { return Id.StartsWith(Family, ESearchCase::CaseSensitive) && Matrix->GetBoolField(Id); }))
			<< UECompatToUtf8(FString(Family));
	}
}

TEST_F(FDiscoveryToolsTest, DiscoveryFlowAndWorkflowsNameRealTools)
{
	const TSharedPtr<FJsonObject> Manifest = CallStructured(TEXT("unreal_get_capabilities"));
	const TSharedPtr<FJsonObject> Flow = Manifest->GetObjectField(TEXT("recommended_discovery_flow"));
	EXPECT_EQ(JsonKeysOf(Flow), TArray<FString>{TEXT("steps")});
	const TArray<FString> FlowSteps = JsonStringsOf(Flow->GetArrayField(TEXT("steps")));
	for (const TCHAR* Step : {TEXT("Call tools/list or host-specific tool search for blueprint_* tools."),
		TEXT("Use blueprint_search_project to find examples or comments before filesystem scraping."),
		TEXT("Use blueprint_read_graph with asset_path and graph_name from search results."),
		TEXT("Use blueprint_find_node_spawners or blueprint_resolve_node_spawner before adding arbitrary nodes."),
		TEXT("Prefer blueprint_add_node with canonical SpawnerId for mutations."),
		TEXT("Use blueprint_connect_nodes for execution/data flow."),
		TEXT("Use blueprint_run_recipe for multi-step Blueprint edits.")})
	{
		EXPECT_TRUE(ContainsExactly(FlowSteps, Step)) << UECompatToUtf8(FString(Step));
	}
	for (const FString& Step : FlowSteps)
	{
		ExpectMentionedToolsExist(Step);
	}

	const TSharedPtr<FJsonObject> Workflows = Manifest->GetObjectField(TEXT("preferred_workflows"));
	EXPECT_EQ(JsonKeysOf(Workflows), (TArray<FString>{TEXT("route_user_task_to_tools"), TEXT("bob_direct_mcp_smoke"), TEXT("jules_async_local_validation"),
		TEXT("bob_jules_onboarding"), TEXT("find_existing_blueprint_context"), TEXT("data_asset_discovery"), TEXT("write_blueprint_graph"),
		TEXT("create_primitive_visual_actor"), TEXT("guarded_editor_actor_placement"), TEXT("visual_editor_qa"), TEXT("pcg_discovery_before_forest_repro"),
		TEXT("pcg_road_city_discovery"), TEXT("pcg_forest_video_demo_recipe"), TEXT("batch_authoring"), TEXT("minimal_material_authoring")}));
	for (const auto& Pair : Workflows->Values)
	{
		const TArray<FString> WorkflowSteps = JsonStringsOf(Pair.Value->AsArray());
		EXPECT_GE(WorkflowSteps.Num(), 2) << UECompatToUtf8(Pair.Key);
		for (const FString& Step : WorkflowSteps)
		{
			ExpectMentionedToolsExist(Step);
		}
	}
}

TEST_F(FDiscoveryToolsTest, SupportContactIsEmptyUntilConfiguredAndStillReadsSensibly)
{
	const TSharedPtr<FJsonObject> Contact = CallStructured(TEXT("unreal_get_capabilities"))->GetObjectField(TEXT("support_contact"));
	EXPECT_EQ(JsonKeysOf(Contact), (TArray<FString>{TEXT("discord"), TEXT("email"), TEXT("guidance"), TEXT("message_template")}));
	EXPECT_EQ(Contact->GetStringField(TEXT("discord")), TEXT(""));
	EXPECT_EQ(Contact->GetStringField(TEXT("email")), TEXT(""));
	const FString Guidance = Contact->GetStringField(TEXT("guidance"));
	EXPECT_TRUE(Guidance.StartsWith(TEXT("When a bridge limitation or error blocks the user, ask them to report the exact task, tool call, error text, Unreal version, and relevant asset paths. "), ESearchCase::CaseSensitive));
	EXPECT_TRUE(Guidance.Contains(TEXT("No support channel is configured"), ESearchCase::CaseSensitive)) << UECompatToUtf8(Guidance);
	EXPECT_FALSE(Guidance.Contains(TEXT("()")) || Guidance.Contains(TEXT("  ")) || Guidance.Contains(TEXT("to .")));
	EXPECT_EQ(Contact->GetStringField(TEXT("message_template")), TEXT("I hit a Zorvek MCP Bridge limitation/error. Task: <task>. Tool/result: <tool and error>. Unreal version: <version>. Assets: <paths>. What feature or fix would unblock this?"));
}

TEST_F(FDiscoveryToolsTest, SupportContactComesFromTheEngineConfiguration)
{
	{
		FSupportContactConfig Config(TEXT("https://discord.example/zorvek"), TEXT("support@example.com"));
		const TSharedPtr<FJsonObject> Contact = CallStructured(TEXT("unreal_get_capabilities"))->GetObjectField(TEXT("support_contact"));
		EXPECT_EQ(Contact->GetStringField(TEXT("discord")), TEXT("https://discord.example/zorvek"));
		EXPECT_EQ(Contact->GetStringField(TEXT("email")), TEXT("support@example.com"));
		const FString Guidance = Contact->GetStringField(TEXT("guidance"));
		EXPECT_TRUE(Guidance.Contains(TEXT("https://discord.example/zorvek")) && Guidance.Contains(TEXT("support@example.com"))) << UECompatToUtf8(Guidance);

		// The router hands out the same contact.
		EXPECT_EQ(ToCondensedJson(Recommend(TEXT("Hello"))->GetObjectField(TEXT("support_contact"))), ToCondensedJson(Contact));
	}
	{
		FSupportContactConfig Config(TEXT(""), TEXT("  support@example.com  "));
		const TSharedPtr<FJsonObject> Contact = CallStructured(TEXT("unreal_get_capabilities"))->GetObjectField(TEXT("support_contact"));
		EXPECT_EQ(Contact->GetStringField(TEXT("discord")), TEXT(""));
		EXPECT_EQ(Contact->GetStringField(TEXT("email")), TEXT("support@example.com"));
		EXPECT_TRUE(Contact->GetStringField(TEXT("guidance")).EndsWith(TEXT("The fastest channel is e-mail to support@example.com."), ESearchCase::CaseSensitive));
	}
	EXPECT_EQ(CallStructured(TEXT("unreal_get_capabilities"))->GetObjectField(TEXT("support_contact"))->GetStringField(TEXT("email")), TEXT(""));
}

// --- unreal_recommend_tools ----------------------------------------------------------------

TEST_F(FDiscoveryToolsTest, RecommendRequiresATask)
{
	for (const bool bEmptyTask : {false, true})
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("Domain"), TEXT("blueprint"));
		if (bEmptyTask)
		{
			Arguments->SetStringField(TEXT("Task"), TEXT(""));
		}
		const TSharedPtr<FJsonObject> Result = Server->ExecuteTool(TEXT("unreal_recommend_tools"), Arguments);
		EXPECT_TRUE(Result->GetBoolField(TEXT("isError")));
		EXPECT_FALSE(Result->HasField(TEXT("structuredContent")));
		EXPECT_EQ(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")), TEXT("unreal_recommend_tools requires Task."));
	}
}

TEST_F(FDiscoveryToolsTest, RecommendationMembersEchoTheInputs)
{
	const TSharedPtr<FJsonObject> Route = Recommend(TEXT("Explain BP_Door"), TEXT("blueprint"), TEXT("inspect"), TEXT("Blueprint"));
	EXPECT_EQ(JsonKeysOf(Route), (TArray<FString>{TEXT("task"), TEXT("domain_hint"), TEXT("intent_hint"), TEXT("asset_type_hint"), TEXT("primary_domain"),
		TEXT("matched_domains"), TEXT("relevant_tools"), TEXT("possibly_relevant_tools"), TEXT("first_steps"), TEXT("unsupported_boundaries"), TEXT("reasoning"),
		TEXT("confidence"), TEXT("agent_guidance"), TEXT("support_contact"), TEXT("next_step")}));
	EXPECT_EQ(Route->GetStringField(TEXT("task")), TEXT("Explain BP_Door"));
	EXPECT_EQ(Route->GetStringField(TEXT("domain_hint")), TEXT("blueprint"));
	EXPECT_EQ(Route->GetStringField(TEXT("intent_hint")), TEXT("inspect"));
	EXPECT_EQ(Route->GetStringField(TEXT("asset_type_hint")), TEXT("Blueprint"));
	EXPECT_EQ(Route->GetStringField(TEXT("confidence")), TEXT("rule_based"));
	EXPECT_TRUE(Route->GetStringField(TEXT("agent_guidance")).StartsWith(TEXT("Use this route to focus tool discovery, not to infer that omitted tools are unavailable. Call unreal_get_capabilities for the full capability matrix. "), ESearchCase::CaseSensitive));
	EXPECT_EQ(Route->GetStringField(TEXT("next_step")), TEXT("Call unreal_get_capabilities."));

	const TSharedPtr<FJsonObject> NoHints = Recommend(TEXT("Hello"));
	EXPECT_EQ(NoHints->GetStringField(TEXT("domain_hint")), TEXT(""));
	EXPECT_EQ(NoHints->GetStringField(TEXT("asset_type_hint")), TEXT(""));
}

TEST_F(FDiscoveryToolsTest, KeywordsMatchIgnoringCaseBlanksUnderscoresHyphensAndParentheses)
{
	EXPECT_EQ(ZorvekMCPBridgeDiscoveryTools::NormalizeRoutingText(TEXT("Primary Data-Asset (PDA)_Item")), TEXT("primarydataassetpdaitem"));
	EXPECT_EQ(ZorvekMCPBridgeDiscoveryTools::NormalizeRoutingText(TEXT("")), TEXT(""));

	for (const TCHAR* Task : {TEXT("make a primarydataasset"), TEXT("make a Primary Data Asset"), TEXT("make a PRIMARY_DATA-ASSET"), TEXT("make a (primary)data asset")})
	{
		EXPECT_TRUE(ContainsExactly(Domains(Recommend(Task)), TEXT("data_asset"))) << UECompatToUtf8(FString(Task));
	}
	for (const TCHAR* Task : {TEXT("PLACE_THE-ACTOR over there"), TEXT("spawn (in) level"), TEXT("visual-QA pass")})
	{
		EXPECT_TRUE(ContainsExactly(Domains(Recommend(Task)), TEXT("editor_world"))) << UECompatToUtf8(FString(Task));
	}
	// Words may run across the joined hints: the task, domain, intent and asset type form one text.
	EXPECT_TRUE(ContainsExactly(Domains(Recommend(TEXT("Look at the whole"), FString(), FString(), TEXT("Editor World"))), TEXT("editor_world")));
	EXPECT_TRUE(ContainsExactly(Domains(Recommend(TEXT("Open the tools"), TEXT("vessa"))), TEXT("vessa_extensions")));
}

namespace RouteExpectations
{
	TArray<FString> Joined(std::initializer_list<TArray<FString>> Lists)
	{
		TArray<FString> Result;
		for (const TArray<FString>& List : Lists)
		{
			Result.Append(List);
		}
		return Result;
	}

	const TArray<FString> None;
	const TArray<FString> ProjectSearchTools = {TEXT("blueprint_search_project"), TEXT("unreal_inspect_asset"), TEXT("blueprint_read_graph")};
	const TArray<FString> DataAssetAuthoringTools = {TEXT("data_asset_create"), TEXT("data_asset_set_property"), TEXT("data_asset_create_batch")};
	const TArray<FString> MaterialAuthoringTools = {TEXT("material_find_expression_classes"), TEXT("material_resolve_expression_class"), TEXT("material_create"),
		TEXT("material_add_expression"), TEXT("material_set_expression_property"), TEXT("material_connect_expressions"), TEXT("material_connect_root"),
		TEXT("material_update"), TEXT("unreal_inspect_asset")};
	const TArray<FString> MaterialReadingTools = {TEXT("unreal_inspect_asset"), TEXT("blueprint_search_project"), TEXT("material_find_expression_classes")};
	const TArray<FString> BlueprintReadingTools = {TEXT("blueprint_search_project"), TEXT("blueprint_read_graph"), TEXT("unreal_inspect_asset")};
	const TArray<FString> BlueprintAuthoringTools = {TEXT("blueprint_create"), TEXT("blueprint_create_primitive_actor"), TEXT("blueprint_resolve_node_spawner"),
		TEXT("blueprint_add_node"), TEXT("blueprint_connect_nodes"), TEXT("blueprint_add_comment"), TEXT("blueprint_compile"), TEXT("blueprint_run_recipe"),
		TEXT("blueprint_add_node_by_search_and_connect")};
	const TArray<FString> EditorWorldTools = {TEXT("editor_get_world_status"), TEXT("editor_place_actor"), TEXT("editor_read_level_actors"),
		TEXT("editor_set_actor_transform"), TEXT("editor_set_component_transform"), TEXT("editor_select_actor"), TEXT("editor_cleanup_repro_actors"),
		TEXT("editor_capture_viewport")};
	const TArray<FString> PcgTools = {TEXT("pcg_get_status"), TEXT("pcg_get_road_capabilities"), TEXT("blueprint_create_road_actor"),
		TEXT("blueprint_create_intersection_actor"), TEXT("blueprint_create_skyscraper_actor"), TEXT("pcg_create_forest_repro"), TEXT("pcg_place_forest_actor"),
		TEXT("pcg_inspect_graph"), TEXT("pcg_set_forest_bounds"), TEXT("pcg_generate"), TEXT("pcg_inspect_generated"), TEXT("pcg_run_forest_recipe"),
		TEXT("pcg_run_road_recipe"), TEXT("pcg_run_spline_road_proof"), TEXT("pcg_run_city_layout_recipe"), TEXT("pcg_update_city_layout_recipe"),
		TEXT("pcg_update_forest_recipe"), TEXT("pcg_multiclass_spawn_proof"), TEXT("pcg_create_visual_repro_output")};
	const TArray<FString> SplineTools = {TEXT("pcg_create_spline_bounds_actor"), TEXT("pcg_inspect_spline_bounds_actor"), TEXT("pcg_set_spline_bounds_actor")};
	const TArray<FString> InspectionTools = {TEXT("unreal_resolve_asset"), TEXT("unreal_inspect_asset")};
	const TArray<FString> OnboardingTools = {TEXT("unreal_get_status"), TEXT("unreal_get_capabilities"), TEXT("unreal_recommend_tools")};
	const TArray<FString> VessaTools = {TEXT("vessa_list_extensions"), TEXT("vessa_search_extensions"), TEXT("vessa_get_extension_details"), TEXT("vessa_call_query"), TEXT("vessa_call_action")};
	const TArray<FString> BroadTools = {TEXT("unreal_get_capabilities"), TEXT("unreal_resolve_asset"), TEXT("unreal_inspect_asset"), TEXT("blueprint_search_project")};

	const FString ProjectSearchStep = TEXT("Call blueprint_search_project with the user's query and package paths, then follow result recommended_next_tools.");
	const FString DataAssetStep = TEXT("Call data_asset_find_classes to discover the exact Data Asset / Primary Data Asset classes, then use data_asset_create_batch for multi-asset requests or data_asset_create plus data_asset_set_property for single assets. Do not use blueprint_create as a Data Asset instance workaround.");
	const FString MaterialAuthoringStep = TEXT("Resolve expression classes before adding material expressions; use material_set_expression_property for post-create reflected property fixes.");
	const FString MaterialReadingStep = TEXT("Use unreal_inspect_asset for direct material readback, or blueprint_search_project to find material examples project-wide.");
	const FString BlueprintReadingStep = TEXT("Search or inspect first, then read the exact graph_name from available_graphs before making conclusions.");
	const FString BlueprintAuthoringStep = TEXT("Prefer canonical spawner IDs via blueprint_resolve_node_spawner, then add/connect/compile and verify with blueprint_read_graph.");
	const FString EditorWorldStep = TEXT("Call editor_get_world_status, then editor_place_actor with AllowCurrentLevel=true for explicit current-level mutation.");
	const FString PcgForestStep = TEXT("Call pcg_get_status first, then prefer pcg_run_forest_recipe for a one-call forest workflow or pcg_update_forest_recipe for resize/density/naturalness adjustments.");
	const FString PcgRoadStep = TEXT("Call pcg_get_status and pcg_get_road_capabilities, then use pcg_run_city_layout_recipe for grid cities, pcg_update_city_layout_recipe for make-it-bigger/denser updates, pcg_run_road_recipe for a straight road strip, or pcg_run_spline_road_proof for spline-rectangle road bounds. True curved spline sampling remains unsupported.");
	const FString InspectionStep = TEXT("Resolve the asset if needed, then call unreal_inspect_asset and honor partial_failures/inspectability fields.");
	const FString BobStep = TEXT("For IBM Bob, use Tools > Zorvek MCP Bridge > Connect AI Assistant... and copy the IBM Bob manual setup snippet for the existing local MCP endpoint. Then ask Bob to call unreal_get_status, unreal_get_capabilities, and unreal_recommend_tools with the user's task before deciding what Zorvek can do. If Bob sees a partial tool list, search/list tools again before saying Zorvek cannot do something. Existing direct MCP clients remain unchanged.");
	const FString JulesStep = TEXT("For Google Jules, use Tools > Zorvek MCP Bridge > Connect AI Assistant... and copy the Jules task packet. Jules should make GitHub/repository changes only, then hand a local validation packet to an Unreal-capable agent that calls unreal_get_status, unreal_get_capabilities, and unreal_recommend_tools. Jules should not assume it can reach the user's 127.0.0.1 Unreal endpoint directly; no Zorvek-hosted relay is provided.");
	const FString SetupStep = TEXT("Use Tools > Zorvek MCP Bridge > Connect AI Assistant... in the Unreal Editor for client setup; MCP can report endpoint/status but config writes are editor UI driven.");
	const FString VessaStep = TEXT("List or search Vessa extensions, inspect extension details, then call explicit query/action names.");
	const FString BroadStep = TEXT("Start with capabilities, resolve/inspect known assets, and use project search before filesystem scraping.");

	const TMap<FString, FString> ReasonOfDomain = {
		{TEXT("project_search"), TEXT("Task includes search/find/example/context language.")},
		{TEXT("data_asset"), TEXT("Task includes Data Asset / Primary Data Asset / PDA language.")},
		{TEXT("material"), TEXT("Task includes material/shader/texture/expression language.")},
		{TEXT("blueprint"), TEXT("Task includes Blueprint graph/node/actor/component/event language.")},
		{TEXT("editor_world"), TEXT("Task includes editor-world actor placement language.")},
		{TEXT("pcg"), TEXT("Task includes PCG/procedural forest/scatter language.")},
		{TEXT("asset_inspection"), TEXT("Task asks to inspect/read non-Blueprint or generic UObject assets.")},
		{TEXT("onboarding"), TEXT("Task mentions AI client connection/setup.")},
		{TEXT("vessa_extensions"), TEXT("Task mentions Vessa extensions/workflows.")},
		{TEXT("broad"), TEXT("No specific domain matched with high confidence.")},
	};

	struct FRouteCase
	{
		const TCHAR* Task;
		TArray<FString> Domains;
		TArray<FString> Relevant;
		TArray<FString> Possibly;
		// Without the support report step, which follows the boundary step whenever there are boundaries.
		TArray<FString> Steps;
		TArray<FString> Boundaries;
	};
}

TEST_F(FDiscoveryToolsTest, EveryDomainRoutesToItsToolsStepsReasonsAndBoundaries)
{
	using namespace RouteExpectations;
	const TArray<FRouteCase> Cases = {
		{TEXT("Find examples of door logic"), {TEXT("project_search")}, ProjectSearchTools, None, {ProjectSearchStep}, None},
		{TEXT("Create three primary data assets for potions"), {TEXT("data_asset"), TEXT("asset_inspection")},
			Joined({{TEXT("data_asset_find_classes")}, DataAssetAuthoringTools, {TEXT("unreal_resolve_asset"), TEXT("unreal_inspect_asset"), TEXT("blueprint_search_project")}}),
			None, {DataAssetStep, InspectionStep, BoundaryStep}, {TEXT("data_asset_array_map_property_editing")}},
		{TEXT("Which UPrimaryDataAsset holds ItemSummary?"), {TEXT("data_asset"), TEXT("asset_inspection")},
			{TEXT("data_asset_find_classes"), TEXT("unreal_resolve_asset"), TEXT("unreal_inspect_asset"), TEXT("blueprint_search_project")},
			DataAssetAuthoringTools, {DataAssetStep, InspectionStep}, None},
		{TEXT("Write a shader with a lerp"), {TEXT("material")}, MaterialAuthoringTools, {TEXT("blueprint_search_project")}, {MaterialAuthoringStep}, None},
		{TEXT("What does the emissive of M_Lava do"), {TEXT("material")}, MaterialReadingTools,
			{TEXT("material_resolve_expression_class"), TEXT("material_create"), TEXT("material_add_expression"), TEXT("material_set_expression_property"),
				TEXT("material_connect_expressions"), TEXT("material_connect_root"), TEXT("material_update")},
			{MaterialReadingStep}, None},
		{TEXT("Create a Blueprint actor that changes a material parameter"), {TEXT("material"), TEXT("blueprint")},
			Joined({MaterialAuthoringTools, BlueprintAuthoringTools, {TEXT("blueprint_add_dynamic_material_parameter_update")}}),
			{TEXT("blueprint_search_project"), TEXT("blueprint_read_graph")}, {MaterialAuthoringStep, BlueprintAuthoringStep}, None},
		{TEXT("Create a Blueprint actor that spins"), {TEXT("blueprint")}, BlueprintAuthoringTools, BlueprintReadingTools, {BlueprintAuthoringStep}, None},
		{TEXT("Explain the graph of BP_Door in pseudocode"), {TEXT("project_search"), TEXT("blueprint")}, ProjectSearchTools, BlueprintAuthoringTools,
			{ProjectSearchStep, BlueprintReadingStep}, None},
		// Blueprint words alone name the domain and offer both tool sets as possibly relevant.
		{TEXT("the door blueprint"), {TEXT("blueprint")}, None, Joined({BlueprintReadingTools, BlueprintAuthoringTools}), {}, None},
		{TEXT("Build a dummy tree from a cylinder"), {TEXT("blueprint")}, BlueprintAuthoringTools,
			Joined({BlueprintReadingTools, {TEXT("editor_place_actor"), TEXT("editor_capture_viewport")}}), {BlueprintAuthoringStep}, None},
		{TEXT("Take a screenshot of the viewport"), {TEXT("editor_world")}, EditorWorldTools, None, {EditorWorldStep}, None},
		{TEXT("Scatter a forest"), {TEXT("blueprint"), TEXT("pcg")}, PcgTools, Joined({BlueprintReadingTools, BlueprintAuthoringTools, SplineTools}), {PcgForestStep}, None},
		{TEXT("Lay out city roads along a spline"), {TEXT("pcg")}, Joined({PcgTools, SplineTools}), None, {PcgRoadStep}, None},
		{TEXT("Inspect the camera rig CR_Main"), {TEXT("asset_inspection")}, InspectionTools, None, {InspectionStep}, None},
		{TEXT("Set up Codex"), {TEXT("onboarding")}, OnboardingTools, None, {SetupStep}, None},
		{TEXT("Onboarding for IBM Bob"), {TEXT("onboarding")}, OnboardingTools, None, {BobStep, SetupStep}, None},
		{TEXT("Hand this to Google Jules"), {TEXT("onboarding")}, OnboardingTools, None, {JulesStep, SetupStep, BoundaryStep},
			{TEXT("jules_direct_localhost_access"), TEXT("zorvek_hosted_relay")}},
		{TEXT("Run my workflow skill"), {TEXT("vessa_extensions")}, VessaTools, None, {VessaStep}, None},
		{TEXT("Hello there"), {TEXT("broad")}, BroadTools, None, {BroadStep}, None},
		{TEXT("Play in editor please"), {TEXT("broad")}, BroadTools, None, {BoundaryStep, BroadStep}, {TEXT("run_pie")}},
	};

	for (const FRouteCase& Case : Cases)
	{
		SCOPED_TRACE(UECompatToUtf8(FString(Case.Task)));
		const TSharedPtr<FJsonObject> Route = Recommend(Case.Task);
		EXPECT_EQ(Domains(Route), Case.Domains);
		EXPECT_EQ(Relevant(Route), Case.Relevant);
		EXPECT_EQ(Possibly(Route), Case.Possibly);
		EXPECT_EQ(Boundaries(Route), Case.Boundaries);
		TArray<FString> ExpectedReasons;
		for (const FString& Domain : Case.Domains)
		{
			ExpectedReasons.Add(ReasonOfDomain.FindRef(Domain));
		}
		EXPECT_EQ(Reasons(Route), ExpectedReasons);
		EXPECT_EQ(Route->GetStringField(TEXT("confidence")), Case.Domains[0] == TEXT("broad") ? TEXT("low") : TEXT("rule_based"));

		// The support report step stands right after the boundary step, and only when there are boundaries.
		TArray<FString> RouteSteps = Steps(Route);
		const int32 BoundaryIndex = RouteSteps.IndexOfByKey(FString(BoundaryStep));
		EXPECT_EQ(BoundaryIndex != INDEX_NONE, !Case.Boundaries.IsEmpty());
		if (BoundaryIndex != INDEX_NONE && BoundaryIndex + 1 < RouteSteps.Num())
		{
			EXPECT_TRUE(RouteSteps[BoundaryIndex + 1].StartsWith(TEXT("Ask the user to report"), ESearchCase::CaseSensitive)) << UECompatToUtf8(RouteSteps[BoundaryIndex + 1]);
			EXPECT_TRUE(RouteSteps[BoundaryIndex + 1].Contains(TEXT("support_contact"), ESearchCase::CaseSensitive));
			RouteSteps.RemoveAt(BoundaryIndex + 1);
		}
		EXPECT_EQ(RouteSteps, Case.Steps);
	}
}

TEST_F(FDiscoveryToolsTest, EveryUnsupportedKeywordNamesItsBoundary)
{
	struct FCase
	{
		const TCHAR* Task;
		const TCHAR* Boundary;
	};
	for (const FCase& Case : {FCase{TEXT("Test it with Play In Editor"), TEXT("run_pie")}, FCase{TEXT("then run game"), TEXT("run_pie")},
		FCase{TEXT("simulate it"), TEXT("run_pie")}, FCase{TEXT("a runtime test"), TEXT("run_pie")},
		FCase{TEXT("make an Enhanced Input Asset"), TEXT("enhanced_input_assets")}, FCase{TEXT("edit the input action asset"), TEXT("enhanced_input_assets")},
		FCase{TEXT("add a key to IMC_Default"), TEXT("input_mapping_context_assets")}, FCase{TEXT("the input mapping context"), TEXT("input_mapping_context_assets")},
		FCase{TEXT("use arbitrary material nodes"), TEXT("broad_material_graph_editing")},
		FCase{TEXT("material graph editing all nodes"), TEXT("broad_material_graph_editing")}})
	{
		const TSharedPtr<FJsonObject> Route = Recommend(Case.Task);
		EXPECT_TRUE(ContainsExactly(Boundaries(Route), Case.Boundary)) << UECompatToUtf8(FString(Case.Task));
		EXPECT_TRUE(ContainsExactly(Steps(Route), BoundaryStep)) << UECompatToUtf8(FString(Case.Task));
	}
}

TEST_F(FDiscoveryToolsTest, AllDomainsAtOnceKeepTheirOrderAndListNothingTwice)
{
	const TSharedPtr<FJsonObject> Route = Recommend(
		TEXT("Search examples, read and inspect the data asset, shader and blueprint graph, place actor in the viewport, scatter a forest, set up Codex and IBM Bob and Jules, call a Vessa extension, and run game"));
	EXPECT_EQ(Domains(Route), (TArray<FString>{TEXT("project_search"), TEXT("data_asset"), TEXT("material"), TEXT("blueprint"), TEXT("editor_world"), TEXT("pcg"),
		TEXT("asset_inspection"), TEXT("onboarding"), TEXT("vessa_extensions")}));
	EXPECT_EQ(Boundaries(Route), (TArray<FString>{TEXT("jules_direct_localhost_access"), TEXT("zorvek_hosted_relay"), TEXT("run_pie")}));
	// blueprint_search_project and unreal_inspect_asset are named by five domains; listed once each.
	const TArray<FString> Tools = Relevant(Route);
	EXPECT_EQ(Tools.IndexOfByPredicate([](const FString& Tool) { return Tool == TEXT("blueprint_search_project"); }), 0);
	EXPECT_EQ(Tools.IndexOfByPredicate([](const FString& Tool) { return Tool == TEXT("unreal_inspect_asset"); }), 1);
	EXPECT_EQ(Route->GetStringField(TEXT("confidence")), TEXT("rule_based"));
}
