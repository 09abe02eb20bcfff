// The tool catalogue that "tools/list" shows, the dispatch chain of "tools/call" and the two
// result builders every tool answers through.
#include "ZorvekTestSupport.h"

#include "Dom/JsonValue.h"
#include "Server/ZorvekMCPBridgeServer.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"

namespace
{
	class FToolCatalogueTest : public ::testing::Test
	{
	protected:
		TSharedPtr<FJsonObject> ListTools()
		{
			TSharedPtr<FJsonObject> Request = MakeShared<FJsonObject>();
			Request->SetNumberField(TEXT("id"), 1);
			Request->SetStringField(TEXT("method"), TEXT("tools/list"));
			const TSharedPtr<FJsonObject> Envelope = Server->HandleJsonRpcRequest(Request);
			return Envelope->GetObjectField(TEXT("result"));
		}

		TArray<TSharedPtr<FJsonObject>> ListedDescriptors()
		{
			TArray<TSharedPtr<FJsonObject>> Descriptors;
			const TSharedPtr<FJsonObject> Result = ListTools();
			for (const TSharedPtr<FJsonValue>& Value : Result->GetArrayField(TEXT("tools")))
			{
				Descriptors.Add(Value->AsObject());
			}
			return Descriptors;
		}

		TSharedPtr<FJsonObject> FindDescriptor(const FString& Name)
		{
			for (const TSharedPtr<FJsonObject>& Descriptor : ListedDescriptors())
			{
				if (Descriptor->GetStringField(TEXT("name")).Equals(Name, ESearchCase::CaseSensitive))
				{
					return Descriptor;
				}
			}
			return nullptr;
		}

		TSharedPtr<FJsonObject> CallTool(const FString& Name)
		{
			TSharedPtr<FJsonObject> Params = MakeShared<FJsonObject>();
			Params->SetStringField(TEXT("name"), Name);
			TSharedPtr<FJsonObject> Request = MakeShared<FJsonObject>();
			Request->SetStringField(TEXT("id"), TEXT("call"));
			Request->SetStringField(TEXT("method"), TEXT("tools/call"));
			Request->SetObjectField(TEXT("params"), Params);
			return Server->HandleJsonRpcRequest(Request);
		}

		TSharedRef<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
	};
}

TEST_F(FToolCatalogueTest, ListsTheSeventySevenToolsInCatalogueOrder)
{
	const TArray<FString> Expected = {
		TEXT("unreal_get_status"), TEXT("unreal_get_capabilities"), TEXT("unreal_recommend_tools"),
		TEXT("vessa_list_extensions"), TEXT("vessa_search_extensions"), TEXT("vessa_get_extension_details"), TEXT("vessa_call_query"), TEXT("vessa_call_action"),
		TEXT("unreal_resolve_asset"), TEXT("unreal_inspect_asset"),
		TEXT("data_asset_find_classes"), TEXT("data_asset_create"), TEXT("data_asset_set_property"), TEXT("data_asset_create_batch"),
		TEXT("editor_get_world_status"), TEXT("editor_place_actor"), TEXT("editor_set_actor_transform"), TEXT("editor_set_component_transform"),
		TEXT("editor_read_level_actors"), TEXT("editor_select_actor"), TEXT("editor_cleanup_repro_actors"), TEXT("editor_capture_viewport"),
		TEXT("blueprint_create_road_actor"), TEXT("blueprint_create_intersection_actor"), TEXT("blueprint_create_skyscraper_actor"),
		TEXT("pcg_get_status"), TEXT("pcg_get_road_capabilities"), TEXT("pcg_create_spline_bounds_actor"), TEXT("pcg_inspect_spline_bounds_actor"),
		TEXT("pcg_set_spline_bounds_actor"), TEXT("pcg_create_forest_repro"), TEXT("pcg_place_forest_actor"), TEXT("pcg_inspect_graph"),
		TEXT("pcg_set_forest_bounds"), TEXT("pcg_generate"), TEXT("pcg_create_visual_repro_output"), TEXT("pcg_inspect_generated"),
		TEXT("pcg_run_forest_recipe"), TEXT("pcg_run_road_recipe"), TEXT("pcg_run_spline_road_proof"), TEXT("pcg_run_city_layout_recipe"),
		TEXT("pcg_update_city_layout_recipe"), TEXT("pcg_update_forest_recipe"), TEXT("pcg_multiclass_spawn_proof"),
		TEXT("unreal_create_mossbank_repro_assets"), TEXT("unreal_create_material_repro_assets"),
		TEXT("material_create"), TEXT("material_find_expression_classes"), TEXT("material_resolve_expression_class"), TEXT("material_add_expression"),
		TEXT("material_set_expression_property"), TEXT("material_connect_expressions"), TEXT("material_connect_root"), TEXT("material_update"),
		TEXT("blueprint_create"), TEXT("blueprint_create_primitive_actor"), TEXT("blueprint_create_interface"), TEXT("blueprint_add_variable"),
		TEXT("blueprint_add_component"), TEXT("blueprint_add_component_motion"), TEXT("blueprint_add_dynamic_material_parameter_update"),
		TEXT("blueprint_create_function"), TEXT("blueprint_create_event_graph"), TEXT("blueprint_implement_interface"), TEXT("blueprint_add_interface_event"),
		TEXT("blueprint_add_custom_event"), TEXT("blueprint_add_comment"), TEXT("blueprint_read_graph"), TEXT("blueprint_search_project"),
		TEXT("blueprint_compile"), TEXT("blueprint_find_node_spawners"), TEXT("blueprint_resolve_node_spawner"), TEXT("blueprint_add_node"),
		TEXT("blueprint_set_node_position"), TEXT("blueprint_connect_nodes"), TEXT("blueprint_add_node_by_search_and_connect"), TEXT("blueprint_run_recipe"),
	};
	ASSERT_EQ(Expected.Num(), 77);

	const TSharedPtr<FJsonObject> Result = ListTools();
	EXPECT_EQ(JsonKeysOf(Result), TArray<FString>{TEXT("tools")});
	TArray<FString> Listed;
	for (const TSharedPtr<FJsonObject>& Descriptor : ListedDescriptors())
	{
		Listed.Add(Descriptor->GetStringField(TEXT("name")));
	}
	ASSERT_EQ(Listed.Num(), Expected.Num());
	for (int32 Index = 0; Index < Expected.Num(); ++Index)
	{
		EXPECT_TRUE(Listed[Index].Equals(Expected[Index], ESearchCase::CaseSensitive)) << "position " << Index << ": " << UECompatToUtf8(Listed[Index]);
	}
	EXPECT_FALSE(Listed.ContainsByPredicate([](const FString& Name) { return Name.Equals(TEXT("vessa_get_status"), ESearchCase::IgnoreCase); }));
}

TEST_F(FToolCatalogueTest, NamesAreLowerCaseWordsAndUniqueAcrossTheDispatchChain)
{
	const TArray<FZorvekMCPBridgeToolDefinition>& Table = ZorvekMCPBridgeTools::GetToolTable();
	for (int32 Index = 0; Index < Table.Num(); ++Index)
	{
		const FString Name = Table[Index].Name;
		for (const TCHAR Character : Name)
		{
			EXPECT_TRUE((Character >= TEXT('a') && Character <= TEXT('z')) || Character == TEXT('_')) << UECompatToUtf8(Name);
		}
		EXPECT_FALSE(Name.StartsWith(TEXT("_")) || Name.EndsWith(TEXT("_")) || Name.Contains(TEXT("__"))) << UECompatToUtf8(Name);
		EXPECT_EQ(ZorvekMCPBridgeTools::FindTool(Name), &Table[Index]) << "a name earlier in the chain shadows " << UECompatToUtf8(Name);
		EXPECT_FALSE(FString(Table[Index].Description).IsEmpty()) << UECompatToUtf8(Name);
	}
}

TEST_F(FToolCatalogueTest, DescriptorsAndSchemasHaveTheirFixedShape)
{
	for (const TSharedPtr<FJsonObject>& Descriptor : ListedDescriptors())
	{
		const FString Name = Descriptor->GetStringField(TEXT("name"));
		SCOPED_TRACE(UECompatToUtf8(Name));
		EXPECT_EQ(JsonKeysOf(Descriptor), (TArray<FString>{TEXT("name"), TEXT("description"), TEXT("inputSchema")}));

		const TSharedPtr<FJsonObject> Schema = Descriptor->GetObjectField(TEXT("inputSchema"));
		EXPECT_EQ(Schema->GetStringField(TEXT("type")), TEXT("object"));
		const TSharedPtr<FJsonObject> Properties = Schema->GetObjectField(TEXT("properties"));
		ASSERT_TRUE(Properties.IsValid());

		bool bAnyRequired = false;
		for (const auto& Pair : Properties->Values)
		{
			const TSharedPtr<FJsonObject> Property = Pair.Value->AsObject();
			const FString Type = Property->GetStringField(TEXT("type"));
			EXPECT_FALSE(Property->GetStringField(TEXT("description")).IsEmpty()) << UECompatToUtf8(Pair.Key);
			if (Type == TEXT("string"))
			{
				EXPECT_EQ(JsonKeysOf(Property), (TArray<FString>{TEXT("type"), TEXT("description")})) << UECompatToUtf8(Pair.Key);
			}
			else
			{
				EXPECT_EQ(Type, TEXT("object")) << UECompatToUtf8(Pair.Key);
				EXPECT_EQ(JsonKeysOf(Property), (TArray<FString>{TEXT("type"), TEXT("description"), TEXT("additionalProperties")})) << UECompatToUtf8(Pair.Key);
				EXPECT_TRUE(Property->GetBoolField(TEXT("additionalProperties")));
			}
		}

		const TArray<FZorvekMCPBridgeToolParameter>& Parameters = ZorvekMCPBridgeTools::FindTool(Name)->Parameters;
		TArray<FString> ExpectedRequired;
		for (const FZorvekMCPBridgeToolParameter& Parameter : Parameters)
		{
			if (Parameter.bRequired)
			{
				ExpectedRequired.Add(Parameter.Name);
			}
			bAnyRequired |= Parameter.bRequired;
		}
		// Two parameters of one tool whose names differ only in case would collapse into one property.
		EXPECT_EQ(Properties->Values.Num(), Parameters.Num());
		if (bAnyRequired)
		{
			EXPECT_EQ(JsonKeysOf(Schema), (TArray<FString>{TEXT("type"), TEXT("properties"), TEXT("required")}));
			EXPECT_EQ(JsonStringsOf(Schema->GetArrayField(TEXT("required"))), ExpectedRequired);
		}
		else
		{
			EXPECT_EQ(JsonKeysOf(Schema), (TArray<FString>{TEXT("type"), TEXT("properties")}));
		}
	}
}

TEST_F(FToolCatalogueTest, ParametersKeepTheirDeclaredOrderFormAndRequiredList)
{
	const TSharedPtr<FJsonObject> Recommend = FindDescriptor(TEXT("unreal_recommend_tools"));
	ASSERT_TRUE(Recommend.IsValid());
	const TSharedPtr<FJsonObject> RecommendSchema = Recommend->GetObjectField(TEXT("inputSchema"));
	EXPECT_EQ(JsonKeysOf(RecommendSchema->GetObjectField(TEXT("properties"))), (TArray<FString>{TEXT("Task"), TEXT("Domain"), TEXT("Intent"), TEXT("AssetType")}));
	EXPECT_EQ(JsonStringsOf(RecommendSchema->GetArrayField(TEXT("required"))), TArray<FString>{TEXT("Task")});
	EXPECT_EQ(RecommendSchema->GetObjectField(TEXT("properties"))->GetObjectField(TEXT("Domain"))->GetStringField(TEXT("description")),
		TEXT("Optional domain hint: blueprint, material, asset_inspection, project_search, onboarding, vessa, or broad."));

	// Arrays are declared as objects, exactly like maps.
	const TSharedPtr<FJsonObject> Recipe = FindDescriptor(TEXT("blueprint_run_recipe"))->GetObjectField(TEXT("inputSchema"));
	EXPECT_EQ(Recipe->GetObjectField(TEXT("properties"))->GetObjectField(TEXT("Steps"))->GetStringField(TEXT("type")), TEXT("object"));
	EXPECT_EQ(JsonStringsOf(Recipe->GetArrayField(TEXT("required"))), TArray<FString>{TEXT("Steps")});
	const TSharedPtr<FJsonObject> FindClasses = FindDescriptor(TEXT("data_asset_find_classes"))->GetObjectField(TEXT("inputSchema"));
	EXPECT_EQ(FindClasses->GetObjectField(TEXT("properties"))->GetObjectField(TEXT("PackagePaths"))->GetStringField(TEXT("type")), TEXT("object"));
	EXPECT_EQ(FindClasses->GetObjectField(TEXT("properties"))->GetObjectField(TEXT("Limit"))->GetStringField(TEXT("type")), TEXT("string"));

	// Numbers and booleans are text parameters; their defaults live in the description.
	const TSharedPtr<FJsonObject> Comment = FindDescriptor(TEXT("blueprint_add_comment"))->GetObjectField(TEXT("inputSchema"));
	const TSharedPtr<FJsonObject> Width = Comment->GetObjectField(TEXT("properties"))->GetObjectField(TEXT("Width"));
	EXPECT_EQ(Width->GetStringField(TEXT("type")), TEXT("string"));
	EXPECT_EQ(Width->GetStringField(TEXT("description")), TEXT("Comment box width. Defaults to 400."));

	const TSharedPtr<FJsonObject> Connect = FindDescriptor(TEXT("blueprint_connect_nodes"))->GetObjectField(TEXT("inputSchema"));
	EXPECT_EQ(JsonStringsOf(Connect->GetArrayField(TEXT("required"))), (TArray<FString>{TEXT("BlueprintNameOrPath"), TEXT("SourceNodeGuid"), TEXT("SourcePinName"), TEXT("TargetNodeGuid"), TEXT("TargetPinName")}));

	// The placement opt-in is enforced by the tool, not by the schema.
	const TSharedPtr<FJsonObject> Place = FindDescriptor(TEXT("editor_place_actor"))->GetObjectField(TEXT("inputSchema"));
	EXPECT_FALSE(Place->HasField(TEXT("required")));
	EXPECT_EQ(JsonKeysOf(Place->GetObjectField(TEXT("properties"))), (TArray<FString>{TEXT("BlueprintNameOrPath"), TEXT("ActorClassPath"), TEXT("ActorLabel"), TEXT("AllowCurrentLevel"),
		TEXT("LocationX"), TEXT("LocationY"), TEXT("LocationZ"), TEXT("RotationPitch"), TEXT("RotationYaw"), TEXT("RotationRoll"), TEXT("ScaleX"), TEXT("ScaleY"), TEXT("ScaleZ")}));
	EXPECT_EQ(Place->GetObjectField(TEXT("properties"))->GetObjectField(TEXT("ScaleZ"))->GetStringField(TEXT("description")), TEXT("Optional actor Z scale. Defaults to 1."));

	const TSharedPtr<FJsonObject> Status = FindDescriptor(TEXT("unreal_get_status"))->GetObjectField(TEXT("inputSchema"));
	EXPECT_EQ(ToCondensedJson(Status), TEXT("{\"type\":\"object\",\"properties\":{}}"));
}

TEST_F(FToolCatalogueTest, DispatchIgnoresLetterCaseAndKnowsTheUnlistedStatusAlias)
{
	const TSharedPtr<FJsonObject> Lower = Server->ExecuteTool(TEXT("unreal_get_status"), MakeShared<FJsonObject>());
	const TSharedPtr<FJsonObject> Upper = Server->ExecuteTool(TEXT("UNREAL_GET_STATUS"), MakeShared<FJsonObject>());
	const TSharedPtr<FJsonObject> Alias = Server->ExecuteTool(TEXT("Vessa_Get_Status"), MakeShared<FJsonObject>());
	ASSERT_TRUE(Lower.IsValid() && Upper.IsValid() && Alias.IsValid());
	EXPECT_EQ(ToCondensedJson(Upper), ToCondensedJson(Lower));
	EXPECT_EQ(ToCondensedJson(Alias), ToCondensedJson(Lower));
	EXPECT_TRUE(Lower->GetObjectField(TEXT("structuredContent"))->HasField(TEXT("unreal_version")));

	EXPECT_FALSE(Server->ExecuteTool(TEXT("unreal_get_statuses"), MakeShared<FJsonObject>()).IsValid());
	EXPECT_FALSE(Server->ExecuteTool(TEXT(""), MakeShared<FJsonObject>()).IsValid());

	const TSharedPtr<FJsonObject> Unknown = CallTool(TEXT("Blueprint_Teleport"));
	ASSERT_TRUE(Unknown->HasField(TEXT("error")));
	EXPECT_EQ(Unknown->GetObjectField(TEXT("error"))->GetNumberField(TEXT("code")), -32601);
	EXPECT_EQ(Unknown->GetObjectField(TEXT("error"))->GetStringField(TEXT("message")), TEXT("Unknown tool: Blueprint_Teleport"));

	// A tool call answered through JSON-RPC carries the tool result unchanged.
	const TSharedPtr<FJsonObject> Called = CallTool(TEXT("UNREAL_GET_CAPABILITIES"));
	ASSERT_TRUE(Called->HasField(TEXT("result")));
	EXPECT_FALSE(Called->GetObjectField(TEXT("result"))->GetBoolField(TEXT("isError")));
	EXPECT_EQ(Called->GetObjectField(TEXT("result"))->GetObjectField(TEXT("structuredContent"))->GetStringField(TEXT("bridge")), TEXT("ZorvekMCPBridge"));
}

TEST_F(FToolCatalogueTest, ToolsWithoutAHandlerSayPlainlyThatTheyAreNotAvailableYet)
{
	const TSharedPtr<FJsonObject> Result = ZorvekMCPBridgeTools::MakeNotAvailableYetResult(TEXT("blueprint_add_node"));
	EXPECT_TRUE(Result->GetBoolField(TEXT("isError")));
	EXPECT_FALSE(Result->HasField(TEXT("structuredContent")));
	const FString Text = Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text"));
	EXPECT_TRUE(Text.StartsWith(TEXT("blueprint_add_node is not available in this build of Zorvek MCP Bridge yet"), ESearchCase::CaseSensitive)) << UECompatToUtf8(Text);

	// Every row without a handler answers so, under its own catalogue name even when called in capitals.
	for (const FZorvekMCPBridgeToolDefinition& Tool : ZorvekMCPBridgeTools::GetToolTable())
	{
		if (Tool.Handler)
		{
			continue;
		}
		const TSharedPtr<FJsonObject> Envelope = CallTool(FString(Tool.Name).ToUpper());
		ASSERT_TRUE(Envelope->HasField(TEXT("result"))) << UECompatToUtf8(FString(Tool.Name));
		EXPECT_EQ(ToCondensedJson(Envelope->GetObjectField(TEXT("result"))), ToCondensedJson(ZorvekMCPBridgeTools::MakeNotAvailableYetResult(Tool.Name)));
	}
}

TEST(FToolResultBuilders, StructuredResultTextParsesBackToTheStructuredContent)
{
	TSharedPtr<FJsonObject> Nested = MakeShared<FJsonObject>();
	Nested->SetNumberField(TEXT("count"), 3);
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetStringField(TEXT("asset_path"), TEXT("/Game/Doors/BP_Door"));
	Payload->SetStringField(TEXT("quote"), TEXT("say \"hi\"\tand\nleave"));
	Payload->SetObjectField(TEXT("nested"), Nested);
	Payload->SetArrayField(TEXT("list"), TArray<TSharedPtr<FJsonValue>>{MakeShared<FJsonValueBoolean>(true), MakeShared<FJsonValueNull>()});

	for (const bool bIsError : {false, true})
	{
		const TSharedPtr<FJsonObject> Result = ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, bIsError);
		EXPECT_EQ(JsonKeysOf(Result), (TArray<FString>{TEXT("content"), TEXT("isError"), TEXT("structuredContent")}));
		EXPECT_EQ(Result->GetBoolField(TEXT("isError")), bIsError);

		const TArray<TSharedPtr<FJsonValue>>& Content = Result->GetArrayField(TEXT("content"));
		ASSERT_EQ(Content.Num(), 1);
		const TSharedPtr<FJsonObject> Item = Content[0]->AsObject();
		EXPECT_EQ(JsonKeysOf(Item), (TArray<FString>{TEXT("type"), TEXT("text")}));
		EXPECT_EQ(Item->GetStringField(TEXT("type")), TEXT("text"));

		// The text is the pretty form of the HTTP bodies (tabs, CR LF), not a condensed one.
		const FString Text = Item->GetStringField(TEXT("text"));
		EXPECT_EQ(Text, FZorvekMCPBridgeServer::SerializeJson(Payload));
		EXPECT_TRUE(Text.Contains(TEXT("\r\n\t\"asset_path\": "), ESearchCase::CaseSensitive)) << UECompatToUtf8(Text);

		const TSharedPtr<FJsonObject> Parsed = ParseJsonObject(Text);
		ASSERT_TRUE(Parsed.IsValid());
		EXPECT_EQ(ToCondensedJson(Parsed), ToCondensedJson(Result->GetObjectField(TEXT("structuredContent"))));
	}
}

TEST(FToolResultBuilders, TextResultCarriesTheMessageAloneAndNoStructuredContent)
{
	const TSharedPtr<FJsonObject> Failure = ZorvekMCPBridgeTools::MakeTextToolResult(TEXT("blueprint_add_comment requires CommentText."), true);
	EXPECT_EQ(JsonKeysOf(Failure), (TArray<FString>{TEXT("content"), TEXT("isError")}));
	EXPECT_TRUE(Failure->GetBoolField(TEXT("isError")));
	const TArray<TSharedPtr<FJsonValue>>& Content = Failure->GetArrayField(TEXT("content"));
	ASSERT_EQ(Content.Num(), 1);
	EXPECT_EQ(Content[0]->AsObject()->GetStringField(TEXT("type")), TEXT("text"));
	EXPECT_EQ(Content[0]->AsObject()->GetStringField(TEXT("text")), TEXT("blueprint_add_comment requires CommentText."));

	const TSharedPtr<FJsonObject> Plain = ZorvekMCPBridgeTools::MakeTextToolResult(TEXT("{\"looks\": \"like json\"}"), false);
	EXPECT_FALSE(Plain->GetBoolField(TEXT("isError")));
	EXPECT_FALSE(Plain->HasField(TEXT("structuredContent")));
	EXPECT_EQ(Plain->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")), TEXT("{\"looks\": \"like json\"}"));
}
