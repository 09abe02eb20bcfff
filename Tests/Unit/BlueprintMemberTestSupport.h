// The fixture of the Blueprint member tool tests: the sample project with one Actor Blueprint
// made by blueprint_create, calls through the server, and read-backs to compare before and after.
#pragma once

#include "AssetTestSupport.h"
#include "Blueprint/ZorvekMCPBridgePinTypes.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"
#include "SimulatedBlueprint.h"

#include <sstream>

namespace ZorvekBlueprintMemberTests
{
	using namespace ZorvekAssetTests;

	inline const TCHAR* const HeroPath = TEXT("/Game/MemberTests/BP_Hero.BP_Hero");

	inline TSharedPtr<FJsonValue> Bool(bool bValue)
	{
		return MakeShared<FJsonValueBoolean>(bValue);
	}

	inline TSharedPtr<FJsonValue> Object(const TSharedPtr<FJsonObject>& Value)
	{
		return MakeShared<FJsonValueObject>(Value);
	}

	// {"Name": ..., "Type": ...} descriptors.
	inline TSharedPtr<FJsonValue> Descriptors(std::initializer_list<std::pair<const TCHAR*, const TCHAR*>> Entries)
	{
		TArray<TSharedPtr<FJsonValue>> Values;
		for (const auto& Entry : Entries)
		{
			Values.Add(Object(Arguments({{TEXT("Name"), Text(Entry.first)}, {TEXT("Type"), Text(Entry.second)}})));
		}
		return MakeShared<FJsonValueArray>(Values);
	}

	inline std::string DescribePinType(const FZorvekMCPBridgePinType& Type)
	{
		return S(ZorvekMCPBridgePinTypes::DescribePinType(Type));
	}

	class FBlueprintMemberToolsTest : public ::testing::Test
	{
	protected:
		void SetUp() override
		{
			Editor = MakeShared<FSimulatedEditor>();
			FString Error;
			ASSERT_TRUE(Editor->LoadProjectFile(GetSimulatedSampleProjectFile(), Error)) << S(Error);
			Port = MakeShared<FSimulatedEditorPort>(Editor);
			Runner = MakeUnique<FToolRunner>(Port);
			ASSERT_FALSE(FToolRunner::IsError(Call(TEXT("blueprint_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/MemberTests"))},
				{TEXT("AssetName"), Text(TEXT("BP_Hero"))}}))));
		}

		TSharedPtr<FJsonObject> Call(const TCHAR* Tool, const TSharedPtr<FJsonObject>& Args)
		{
			return Runner->Call(Tool, Args);
		}

		// A call on the hero Blueprint with further arguments.
		TSharedPtr<FJsonObject> CallOnHero(const TCHAR* Tool, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			Args->SetStringField(TEXT("BlueprintNameOrPath"), HeroPath);
			return Call(Tool, Args);
		}

		FZorvekMCPBridgeBlueprintSnapshot Read(const TCHAR* ObjectPath = HeroPath) const
		{
			FZorvekMCPBridgeBlueprintSnapshot Snapshot;
			const FZorvekMCPBridgeObjectHandle Blueprint = Port->GetObjects().FindObject(ObjectPath);
			EXPECT_TRUE(Port->GetBlueprints().ReadBlueprint(Blueprint, Snapshot)) << S(ObjectPath);
			return Snapshot;
		}

		// Everything the member tools can change, as text, to compare before and after a call.
		std::string Describe(const TCHAR* ObjectPath = HeroPath) const
		{
			const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read(ObjectPath);
			std::ostringstream Out;
			for (const FZorvekMCPBridgeGraphSnapshot& Graph : Snapshot.Graphs)
			{
				Out << "graph " << S(Graph.Name) << ":";
				for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
				{
					Out << " " << S(Node.Title) << "/" << Node.Pins.Num();
				}
				Out << "\n";
			}
			for (const FZorvekMCPBridgeVariableSnapshot& Variable : Snapshot.Variables)
			{
				Out << "var " << S(Variable.VarName.ToString()) << " " << DescribePinType(Variable.VarType) << " " << S(Variable.Category) << "\n";
			}
			for (const FZorvekMCPBridgeComponentSnapshot& Component : Snapshot.Components)
			{
				Out << "component " << S(Component.Name) << " " << S(Component.ComponentClassName) << " under " << S(Component.ParentComponentName) << "\n";
			}
			for (const FZorvekMCPBridgeImplementedInterfaceSnapshot& Interface : Snapshot.ImplementedInterfaces)
			{
				Out << "interface " << S(Interface.InterfaceClassPath) << "\n";
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

		// The call fails with the message and the hero Blueprint reads back as before.
		void ExpectRefusedUnchanged(const TCHAR* Tool, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields, const std::string& Message)
		{
			const std::string Before = Describe();
			EXPECT_EQ(ErrorText(CallOnHero(Tool, Fields)), Message);
			EXPECT_EQ(Describe(), Before);
		}

		// A full compile, as blueprint_compile would run it.
		void Compile(const TCHAR* ObjectPath) const
		{
			FSimulatedBlueprints& Blueprints = Editor->GetBlueprints();
			FSimulatedBlueprint* Blueprint = Blueprints.FindBlueprint(FSimulatedEditorPort::ToObject(Port->GetObjects().FindObject(ObjectPath)));
			ASSERT_NE(Blueprint, nullptr) << S(ObjectPath);
			Blueprints.Compile(*Blueprint);
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

		const FZorvekMCPBridgeGraphSnapshot* FindGraph(const FZorvekMCPBridgeBlueprintSnapshot& Snapshot, const TCHAR* Name) const
		{
			for (const FZorvekMCPBridgeGraphSnapshot& Graph : Snapshot.Graphs)
			{
				if (Graph.Name == Name)
				{
					return &Graph;
				}
			}
			return nullptr;
		}

		TSharedPtr<FSimulatedEditor> Editor;
		TSharedPtr<FSimulatedEditorPort> Port;
		TUniquePtr<FToolRunner> Runner;
	};
}
