// blueprint_read_graph through the server on simulated Blueprints built the way the editor builds
// them: default ghost events, an interface Blueprint and a Blueprint implementing it, a further
// event graph, a construction script, a Blueprint without parent class, and the failures.
#include "AssetTestSupport.h"
#include "SimulatedBlueprint.h"

using namespace ZorvekAssetTests;

namespace
{
	const TCHAR* const DoorPath = TEXT("/Game/ReaderTests/BP_Door.BP_Door");
	const TCHAR* const OpenableClassPath = TEXT("/Game/ReaderTests/BPI_Openable.BPI_Openable_C");

	const TCHAR* const ReaderProject = TEXT(R"json(
		"include": ["BlueprintEngineTypes.json"],
		"assets": [
			{"package": "/Game/ReaderTests/BPI_Openable", "blueprint": {"type": "Interface", "functions": [
				{"name": "Open", "inputs": [{"name": "Speed", "type": "float"}]},
				{"name": "GetState", "outputs": [{"name": "bOpen", "type": "bool"}]}]}},
			{"package": "/Game/ReaderTests/BP_Door", "blueprint": {"parent": "/Script/Engine.Actor",
				"interfaces": ["/Game/ReaderTests/BPI_Openable.BPI_Openable_C"],
				"variables": [{"name": "bLocked", "type": "bool", "default": "true", "category": "Door"}],
				"functions": [{"name": "OpenDoor", "inputs": [{"name": "Speed", "type": "float"}], "outputs": [{"name": "bOpened", "type": "bool"}]}],
				"components": [{"name": "Frame", "class": "/Script/Engine.StaticMeshComponent",
					"values": {"StaticMesh": "/Script/Engine.StaticMesh'/Engine/BasicShapes/Cube.Cube'"}}],
				"graphs": [
					{"name": "EventGraph", "nodes": [
						{"id": "begin", "kind": "event", "function": "ReceiveBeginPlay", "x": 0, "y": 0},
						{"id": "branch", "kind": "branch", "x": 300, "y": 0},
						{"id": "call", "kind": "call", "function": "self:OpenDoor", "x": 600, "y": 0},
						{"id": "open", "kind": "event", "interface": "/Game/ReaderTests/BPI_Openable.BPI_Openable_C", "function": "Open", "x": 0, "y": 400}],
					 "links": ["begin.then -> branch.execute", "branch.then -> call.execute"]},
					{"name": "Combat", "nodes": [
						{"id": "knock", "kind": "custom_event", "name": "Knock", "parameters": [{"name": "Loudness", "type": "float"}], "x": 0, "y": 0}]}
				]}},
			{"package": "/Game/ReaderTests/BP_Plain", "blueprint": {"parent": "/Script/Engine.Actor"}},
			{"package": "/Game/ReaderTests/BP_NoParent", "blueprint": {}}
		])json");

	struct FReaderFixture
	{
		TSharedPtr<FSimulatedEditorPort> Port = LoadInlineProject(ReaderProject, nullptr, false);
		FToolRunner Runner{Port};

		TSharedPtr<FJsonObject> Read(const TCHAR* Blueprint, const TCHAR* GraphName = nullptr)
		{
			TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
			Arguments->SetStringField(TEXT("BlueprintNameOrPath"), Blueprint);
			if (GraphName)
			{
				Arguments->SetStringField(TEXT("GraphName"), GraphName);
			}
			return Runner.Call(TEXT("blueprint_read_graph"), Arguments);
		}

		TSharedPtr<FJsonObject> ReadPayload(const TCHAR* Blueprint, const TCHAR* GraphName = nullptr)
		{
			const TSharedPtr<FJsonObject> Result = Read(Blueprint, GraphName);
			EXPECT_FALSE(FToolRunner::IsError(Result)) << S(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")));
			const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
			return Payload.IsValid() ? Payload : MakeShared<FJsonObject>();
		}

		FString ReadError(const TSharedPtr<FJsonObject>& Arguments)
		{
			const TSharedPtr<FJsonObject> Result = Runner.Call(TEXT("blueprint_read_graph"), Arguments);
			EXPECT_TRUE(FToolRunner::IsError(Result));
			return Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text"));
		}
	};

	std::vector<std::string> Keys(const TSharedPtr<FJsonObject>& Object)
	{
		std::vector<std::string> Result;
		for (const TPair<FString, TSharedPtr<FJsonValue>>& Pair : Object->Values)
		{
			Result.push_back(UECompatToUtf8(Pair.Key));
		}
		return Result;
	}

	TArray<FString> StringsOf(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key)
	{
		TArray<FString> Values;
		for (const TSharedPtr<FJsonValue>& Value : Object->GetArrayField(Key))
		{
			Values.Add(Value->AsString());
		}
		return Values;
	}

	TSharedPtr<FJsonObject> NodeOfKind(const TSharedPtr<FJsonObject>& Parsed, const TCHAR* Kind)
	{
		for (const TSharedPtr<FJsonValue>& Node : Parsed->GetArrayField(TEXT("nodes")))
		{
			if (Node->AsObject()->GetStringField(TEXT("node_kind")) == Kind)
			{
				return Node->AsObject();
			}
		}
		ADD_FAILURE() << "no node of kind " << UECompatToUtf8(Kind);
		return MakeShared<FJsonObject>();
	}
}

// unreal-behaviour-blueprints.md §1.3: a new Actor Blueprint's EventGraph holds the BeginPlay,
// ActorBeginOverlap and Tick ghost events; its construction script is a function graph.
TEST(BlueprintReadGraphTool, NewActorBlueprintReadsItsGhostEventsAndListsEveryGraph)
{
	FReaderFixture Fixture;
	const TSharedPtr<FJsonObject> Payload = Fixture.ReadPayload(TEXT("/Game/ReaderTests/BP_Plain"));
	EXPECT_EQ(Keys(Payload), (std::vector<std::string>{"raw_result", "parsed_graph", "asset_path", "available_graphs", "available_graph_count"}));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("asset_path"))), "/Game/ReaderTests/BP_Plain.BP_Plain");
	EXPECT_TRUE(Payload->GetStringField(TEXT("raw_result")).StartsWith(TEXT("# BLUEPRINT: BP_Plain\nParent Class: Actor\n# GRAPH EventGraph type=ubergraph 3\n"), ESearchCase::CaseSensitive))
		<< S(Payload->GetStringField(TEXT("raw_result")));
	EXPECT_EQ(ToStd(Collect(Payload->GetObjectField(TEXT("parsed_graph"))->GetArrayField(TEXT("nodes")), TEXT("spawner_id"))),
		(std::vector<std::string>{"event::ReceiveBeginPlay", "event::ReceiveActorBeginOverlap", "event::ReceiveTick"}));

	const TArray<TSharedPtr<FJsonValue>>& Graphs = Payload->GetArrayField(TEXT("available_graphs"));
	EXPECT_EQ(ToStd(Collect(Graphs, TEXT("name"))), (std::vector<std::string>{"UserConstructionScript", "EventGraph"}));
	EXPECT_EQ(ToStd(Collect(Graphs, TEXT("graph_type"))), (std::vector<std::string>{"function", "ubergraph"}));
	EXPECT_EQ(Payload->GetNumberField(TEXT("available_graph_count")), 2);
	const TSharedPtr<FJsonObject> EventGraph = Graphs[1]->AsObject();
	EXPECT_EQ(Keys(EventGraph), (std::vector<std::string>{"name", "graph_name", "graph_type", "node_count", "connection_count", "comment_count", "event_names", "read_graph_arguments"}));
	EXPECT_EQ(ToStd(StringsOf(EventGraph, TEXT("event_names"))), (std::vector<std::string>{"ReceiveBeginPlay", "ReceiveActorBeginOverlap", "ReceiveTick"}));

	// The read arguments a summary hands out read that graph again, unchanged.
	const TSharedPtr<FJsonObject> Again = Fixture.Runner.Call(TEXT("blueprint_read_graph"), Graphs[0]->AsObject()->GetObjectField(TEXT("read_graph_arguments")));
	ASSERT_FALSE(FToolRunner::IsError(Again));
	EXPECT_EQ(S(FToolRunner::Payload(Again)->GetObjectField(TEXT("parsed_graph"))->GetStringField(TEXT("graph"))), "UserConstructionScript");
	EXPECT_EQ(S(FToolRunner::Payload(Again)->GetObjectField(TEXT("parsed_graph"))->GetStringField(TEXT("graph_type"))), "function");
}

TEST(BlueprintReadGraphTool, NamesAndPathsResolveToTheSameBlueprint)
{
	FReaderFixture Fixture;
	for (const TCHAR* Query : {TEXT("BP_Plain"), TEXT("/Game/ReaderTests/BP_Plain"), TEXT("/Game/ReaderTests/BP_Plain.BP_Plain")})
	{
		EXPECT_EQ(S(Fixture.ReadPayload(Query)->GetStringField(TEXT("asset_path"))), "/Game/ReaderTests/BP_Plain.BP_Plain") << S(Query);
	}
	// Graph names compare as names do.
	EXPECT_EQ(S(Fixture.ReadPayload(TEXT("BP_Plain"), TEXT("eventGRAPH"))->GetObjectField(TEXT("parsed_graph"))->GetStringField(TEXT("graph"))), "EventGraph");
}

TEST(BlueprintReadGraphTool, DefaultedGraphWarnsAboutFurtherEventGraphsOnly)
{
	FReaderFixture Fixture;
	const TSharedPtr<FJsonObject> Defaulted = Fixture.ReadPayload(DoorPath);
	EXPECT_EQ(ToStd(StringsOf(Defaulted, TEXT("warnings"))), (std::vector<std::string>{"blueprint_read_graph defaulted to 'EventGraph', but this Blueprint has 2 Ubergraphs. "
																				   "Read additional graphs explicitly with GraphName. Other Ubergraphs: Combat"}));
	EXPECT_FALSE(Fixture.ReadPayload(DoorPath, TEXT("EventGraph"))->HasField(TEXT("warnings")));

	// A third page: the other two are listed, joined.
	FSimulatedEditor& Editor = Fixture.Port->GetEditor();
	FSimulatedBlueprint* Door = Editor.GetBlueprints().FindBlueprint(Fixture.Port->ToObject(Fixture.Port->GetObjects().FindObject(DoorPath)));
	ASSERT_NE(Door, nullptr);
	Editor.GetBlueprints().AddUbergraphPage(*Door, Editor.GetBlueprints().CreateNewGraph(*Door, TEXT("Doors")));
	EXPECT_TRUE(StringsOf(Fixture.ReadPayload(DoorPath), TEXT("warnings"))[0].EndsWith(TEXT("has 3 Ubergraphs. Read additional graphs explicitly with GraphName. Other Ubergraphs: Combat, Doors")));
}

TEST(BlueprintReadGraphTool, BlueprintWithoutParentReadsNone)
{
	FReaderFixture Fixture;
	const FString Raw = Fixture.ReadPayload(TEXT("/Game/ReaderTests/BP_NoParent"))->GetStringField(TEXT("raw_result"));
	EXPECT_TRUE(Raw.StartsWith(TEXT("# BLUEPRINT: BP_NoParent\nParent Class: None\n# GRAPH EventGraph type=ubergraph "), ESearchCase::CaseSensitive)) << S(Raw);
}

TEST(BlueprintReadGraphTool, ImplementingBlueprintReadsItsInterfaceEventsGraphsAndMembers)
{
	FReaderFixture Fixture;
	const TSharedPtr<FJsonObject> Parsed = Fixture.ReadPayload(DoorPath, TEXT("EventGraph"))->GetObjectField(TEXT("parsed_graph"));

	const TSharedPtr<FJsonObject> Open = NodeOfKind(Parsed, TEXT("interface_event"));
	EXPECT_EQ(S(Open->GetStringField(TEXT("spawner_id"))), "interface_event::/Game/ReaderTests/BPI_Openable.BPI_Openable_C:Open");
	const TSharedPtr<FJsonObject> Implementation = Open->GetObjectField(TEXT("interface_implementation"));
	EXPECT_EQ(S(Implementation->GetStringField(TEXT("interface_blueprint_path"))), "/Game/ReaderTests/BPI_Openable.BPI_Openable");
	EXPECT_EQ(ToStd(Collect(Implementation->GetArrayField(TEXT("parameters")), TEXT("name"))), std::vector<std::string>{"Speed"});
	EXPECT_EQ(S(NodeOfKind(Parsed, TEXT("function_call"))->GetStringField(TEXT("spawner_id"))), "bp_func::OpenDoor");
	EXPECT_EQ(S(NodeOfKind(Parsed, TEXT("branch"))->GetStringField(TEXT("spawner_id"))), "node::branch");

	// Only GetState has outputs, so only it became a graph of the interface.
	const TArray<TSharedPtr<FJsonValue>>& Interfaces = Parsed->GetArrayField(TEXT("implemented_interfaces"));
	ASSERT_EQ(Interfaces.Num(), 1);
	EXPECT_EQ(S(Interfaces[0]->AsObject()->GetStringField(TEXT("interface_class_path"))), S(OpenableClassPath));
	EXPECT_EQ(ToStd(StringsOf(Interfaces[0]->AsObject(), TEXT("graphs"))), std::vector<std::string>{"GetState"});
	// Graph order: the event graph before the interface's graphs.
	EXPECT_EQ(ToStd(Collect(Parsed->GetArrayField(TEXT("interface_implementations")), TEXT("spawner_id"))),
		(std::vector<std::string>{"interface_event::/Game/ReaderTests/BPI_Openable.BPI_Openable_C:Open", "interface_function::/Game/ReaderTests/BPI_Openable.BPI_Openable_C:GetState"}));

	// Blueprint-wide sections, whichever graph is read.
	EXPECT_EQ(ToStd(Collect(Parsed->GetArrayField(TEXT("custom_events")), TEXT("spawner_id"))), std::vector<std::string>{"custom_event::Knock"});
	EXPECT_EQ(ToStd(Collect(Parsed->GetArrayField(TEXT("custom_events")), TEXT("graph"))), std::vector<std::string>{"Combat"});
	EXPECT_EQ(ToStd(Collect(Parsed->GetArrayField(TEXT("functions")), TEXT("spawner_id"))), (std::vector<std::string>{"bp_func::UserConstructionScript", "bp_func::OpenDoor"}));
	const TSharedPtr<FJsonObject> Variable = Parsed->GetArrayField(TEXT("variables"))[0]->AsObject();
	EXPECT_EQ(S(Variable->GetStringField(TEXT("name"))), "bLocked");
	EXPECT_EQ(S(Variable->GetStringField(TEXT("category"))), "Door");
	EXPECT_EQ(S(Variable->GetStringField(TEXT("default_value"))), "true");

	const TArray<TSharedPtr<FJsonValue>>& Components = Parsed->GetArrayField(TEXT("components"));
	ASSERT_EQ(Components.Num(), 1);
	const TSharedPtr<FJsonObject> Frame = Components[0]->AsObject();
	EXPECT_EQ(Keys(Frame), (std::vector<std::string>{"name", "component_class", "template_path", "parent_component", "static_mesh", "slot", "material", "materials", "properties"}));
	EXPECT_EQ(S(Frame->GetStringField(TEXT("static_mesh"))), "/Engine/BasicShapes/Cube.Cube");
	EXPECT_TRUE(Frame->GetObjectField(TEXT("properties"))->HasField(TEXT("StaticMesh")));
	EXPECT_NE(Fixture.ReadPayload(DoorPath, TEXT("EventGraph"))->GetStringField(TEXT("raw_result")).Find(TEXT("\nFrame\t/Script/Engine.StaticMeshComponent\tmesh=/Engine/BasicShapes/Cube.Cube\tparent=\n")), INDEX_NONE);
}

TEST(BlueprintReadGraphTool, InterfaceBlueprintAndInterfaceGraphsRead)
{
	FReaderFixture Fixture;
	// unreal-behaviour-blueprints.md §5.4: an interface Blueprint holds one graph per function.
	const TSharedPtr<FJsonObject> Interface = Fixture.ReadPayload(TEXT("/Game/ReaderTests/BPI_Openable"), TEXT("GetState"));
	EXPECT_EQ(ToStd(Collect(Interface->GetArrayField(TEXT("available_graphs")), TEXT("name"))), (std::vector<std::string>{"Open", "GetState"}));
	EXPECT_EQ(S(Interface->GetObjectField(TEXT("parsed_graph"))->GetStringField(TEXT("graph_type"))), "function");

	const TSharedPtr<FJsonObject> Parsed = Fixture.ReadPayload(DoorPath, TEXT("GetState"))->GetObjectField(TEXT("parsed_graph"));
	EXPECT_EQ(S(Parsed->GetStringField(TEXT("graph_type"))), "ubergraph");
	const TSharedPtr<FJsonObject> Entry = NodeOfKind(Parsed, TEXT("function_entry"));
	EXPECT_EQ(S(Entry->GetStringField(TEXT("spawner_id"))), "interface_function::/Game/ReaderTests/BPI_Openable.BPI_Openable_C:GetState");
	EXPECT_EQ(S(Entry->GetObjectField(TEXT("interface_implementation"))->GetStringField(TEXT("implementation_kind"))), "function_entry");
}

TEST(BlueprintReadGraphTool, FailuresNameTheProblemAndChangeNothing)
{
	FReaderFixture Fixture;
	const FString Before = Fixture.ReadPayload(DoorPath, TEXT("EventGraph"))->GetStringField(TEXT("raw_result"));

	EXPECT_EQ(S(Fixture.ReadError(Arguments({}))), "Blueprint asset path is empty.");
	// A non-string name is no name.
	EXPECT_EQ(S(Fixture.ReadError(Arguments({{TEXT("BlueprintNameOrPath"), MakeShared<FJsonValueObject>(MakeShared<FJsonObject>())}}))), "Blueprint asset path is empty.");
	EXPECT_EQ(S(Fixture.ReadError(Arguments({{TEXT("BlueprintNameOrPath"), Text(TEXT("/Game/ReaderTests/BP_Missing"))}}))),
		"Could not load Blueprint: /Game/ReaderTests/BP_Missing.BP_Missing");
	EXPECT_EQ(S(Fixture.ReadError(Arguments({{TEXT("BlueprintNameOrPath"), Text(TEXT("NoSuchBlueprintAnywhere"))}}))), "Could not load Blueprint: NoSuchBlueprintAnywhere");
	// A loadable asset that is not a Blueprint.
	EXPECT_EQ(S(Fixture.ReadError(Arguments({{TEXT("BlueprintNameOrPath"), Text(TEXT("/Engine/BasicShapes/Cube"))}}))), "Could not load Blueprint: /Engine/BasicShapes/Cube.Cube");
	EXPECT_EQ(S(Fixture.ReadError(Arguments({{TEXT("BlueprintNameOrPath"), Text(DoorPath)}, {TEXT("GraphName"), Text(TEXT("Nope"))}}))),
		"Could not find graph 'Nope' in /Game/ReaderTests/BP_Door.BP_Door.");
	EXPECT_EQ(S(Fixture.ReadError(Arguments({{TEXT("BlueprintNameOrPath"), Text(DoorPath)}, {TEXT("GraphName"), Number(7)}}))),
		"Could not find graph '7' in /Game/ReaderTests/BP_Door.BP_Door.");

	EXPECT_EQ(S(Fixture.ReadPayload(DoorPath, TEXT("EventGraph"))->GetStringField(TEXT("raw_result"))), S(Before));
}
