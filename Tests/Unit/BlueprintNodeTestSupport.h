// The fixture of the Blueprint node tool tests: the sample project's BP_Showcase (variables,
// components, functions, custom events, an interface) and a fresh Actor Blueprint, calls through
// the server, and graph read-backs to prove a refused call changed nothing.
#pragma once

#include "AssetTestSupport.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

#include <sstream>

namespace ZorvekBlueprintNodeTests
{
	using namespace ZorvekAssetTests;

	inline const TCHAR* const ShowcasePath = TEXT("/Game/Blueprints/BP_Showcase.BP_Showcase");
	inline const TCHAR* const FreshPath = TEXT("/Game/NodeTests/BP_Fresh.BP_Fresh");

	inline TSharedPtr<FJsonValue> Bool(bool bValue)
	{
		return MakeShared<FJsonValueBoolean>(bValue);
	}

	class FBlueprintNodeToolsTest : public ::testing::Test
	{
	protected:
		void SetUp() override
		{
			Port = LoadSampleProject();
			Runner = MakeUnique<FToolRunner>(Port);
			Ok(Runner->Call(TEXT("blueprint_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/NodeTests"))}, {TEXT("AssetName"), Text(TEXT("BP_Fresh"))}})));
		}

		// A call on a Blueprint with further arguments.
		TSharedPtr<FJsonObject> CallOn(const TCHAR* Blueprint, const TCHAR* Tool, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			Args->SetStringField(TEXT("BlueprintNameOrPath"), Blueprint);
			return Runner->Call(Tool, Args);
		}

		// blueprint_add_node with the id and further arguments; the whole answer.
		TSharedPtr<FJsonObject> AddNode(const TCHAR* Blueprint, const FString& SpawnerId, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields = {})
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			Args->SetStringField(TEXT("BlueprintNameOrPath"), Blueprint);
			Args->SetStringField(TEXT("SpawnerId"), SpawnerId);
			return Runner->Call(TEXT("blueprint_add_node"), Args);
		}

		// The new node's GUID, failing the test when the node was refused.
		FString AddNodeGuid(const TCHAR* Blueprint, const FString& SpawnerId, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields = {})
		{
			return Ok(AddNode(Blueprint, SpawnerId, Fields))->GetStringField(TEXT("node_guid"));
		}

		TSharedPtr<FJsonObject> Connect(const TCHAR* Blueprint, const FString& SourceGuid, const TCHAR* SourcePin, const FString& TargetGuid, const TCHAR* TargetPin,
			const TCHAR* GraphName = TEXT("EventGraph"))
		{
			return CallOn(Blueprint, TEXT("blueprint_connect_nodes"), {{TEXT("GraphName"), Text(GraphName)}, {TEXT("SourceNodeGuid"), Text(*SourceGuid)},
				{TEXT("SourcePinName"), Text(SourcePin)}, {TEXT("TargetNodeGuid"), Text(*TargetGuid)}, {TEXT("TargetPinName"), Text(TargetPin)}});
		}

		FZorvekMCPBridgeBlueprintSnapshot Read(const TCHAR* ObjectPath) const
		{
			FZorvekMCPBridgeBlueprintSnapshot Snapshot;
			EXPECT_TRUE(Port->GetBlueprints().ReadBlueprint(Port->GetObjects().FindObject(ObjectPath), Snapshot)) << S(ObjectPath);
			return Snapshot;
		}

		const FZorvekMCPBridgeNodeSnapshot* FindNode(const FZorvekMCPBridgeBlueprintSnapshot& Snapshot, const FString& NodeGuid) const
		{
			for (const FZorvekMCPBridgeGraphSnapshot& Graph : Snapshot.Graphs)
			{
				for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
				{
					if (Node.NodeGuid == NodeGuid)
					{
						return &Node;
					}
				}
			}
			return nullptr;
		}

		// The names of the node's pins linked to the given pin of another node, "guid.pin".
		std::vector<std::string> LinksOf(const TCHAR* Blueprint, const FString& NodeGuid, const TCHAR* PinName) const
		{
			std::vector<std::string> Links;
			const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(Blueprint);
			const FZorvekMCPBridgeNodeSnapshot* Node = FindNode(Snapshot, NodeGuid);
			EXPECT_NE(Node, nullptr) << S(NodeGuid);
			for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node ? Node->Pins : TArray<FZorvekMCPBridgeGraphPinSnapshot>())
			{
				if (Pin.Pin.PinName == FName(PinName))
				{
					for (const FZorvekMCPBridgePinLink& Link : Pin.LinkedTo)
					{
						Links.push_back(S(Link.NodeGuid + TEXT(".") + Link.PinName.ToString()));
					}
				}
			}
			return Links;
		}

		// Every graph with its nodes (GUID, title, position, pin defaults) and links, to compare
		// before and after a call.
		std::string Describe(const TCHAR* Blueprint) const
		{
			const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(Blueprint);
			std::ostringstream Out;
			for (const FZorvekMCPBridgeGraphSnapshot& Graph : Snapshot.Graphs)
			{
				Out << "graph " << S(Graph.Name) << "\n";
				for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
				{
					Out << " " << S(Node.NodeGuid) << " " << S(Node.Title) << " @" << Node.PosX << "," << Node.PosY << " " << Node.Width << "x" << Node.Height << "\n";
					for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
					{
						Out << "  " << S(Pin.Pin.PinName.ToString()) << "='" << S(Pin.Pin.DefaultValue) << "'";
						for (const FZorvekMCPBridgePinLink& Link : Pin.LinkedTo)
						{
							Out << " ->" << S(Link.NodeGuid) << "." << S(Link.PinName.ToString());
						}
						Out << "\n";
					}
				}
			}
			return Out.str();
		}

		static std::string ErrorText(const TSharedPtr<FJsonObject>& Result)
		{
			EXPECT_TRUE(FToolRunner::IsError(Result));
			return S(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")));
		}

		static TSharedPtr<FJsonObject> Ok(const TSharedPtr<FJsonObject>& Result)
		{
			EXPECT_FALSE(FToolRunner::IsError(Result)) << S(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")));
			const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
			return Payload.IsValid() ? Payload : MakeShared<FJsonObject>();
		}

		static std::vector<std::string> Keys(const TSharedPtr<FJsonObject>& Object)
		{
			std::vector<std::string> Names;
			for (const auto& Field : Object->Values)
			{
				Names.push_back(S(Field.Key));
			}
			return Names;
		}

		// The call is refused with the message and the Blueprint reads back as before.
		void ExpectAddRefused(const TCHAR* Blueprint, const FString& SpawnerId, const std::string& Message,
			std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields = {})
		{
			const std::string Before = Describe(Blueprint);
			EXPECT_EQ(ErrorText(AddNode(Blueprint, SpawnerId, Fields)), Message) << S(SpawnerId);
			EXPECT_EQ(Describe(Blueprint), Before) << S(SpawnerId);
		}

		TSharedPtr<FSimulatedEditorPort> Port;
		TUniquePtr<FToolRunner> Runner;
	};
}
