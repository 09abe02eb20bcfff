// Helpers of the asset, reader and simulated-editor tests: the sample project behind a port, small
// inline projects on top of the engine types, and tool calls through a real server object.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Server/ZorvekMCPBridgeServer.h"
#include "SimulatedEditorPort.h"

#include <gtest/gtest.h>

namespace ZorvekAssetTests
{
	// A fresh copy of the sample project each time, so a test may change it.
	inline TSharedPtr<FSimulatedEditorPort> LoadSampleProject()
	{
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		FString Error;
		EXPECT_TRUE(Editor->LoadProjectFile(GetSimulatedSampleProjectFile(), Error)) << UECompatToUtf8(Error);
		return MakeShared<FSimulatedEditorPort>(Editor);
	}

	// A project fixture given inline (the members of the top-level object), by default on top of
	// the engine types of the sample project.
	inline TSharedPtr<FSimulatedEditorPort> LoadInlineProject(const FString& BodyJson, FString* OutError = nullptr, bool bIncludeEngineTypes = true)
	{
		FString SampleDirectory = GetSimulatedSampleProjectFile();
		int32 SlashIndex = INDEX_NONE;
		SampleDirectory.FindLastChar(TEXT('/'), SlashIndex);
		SampleDirectory.LeftInline(SlashIndex);
		const FString Json = FString(bIncludeEngineTypes ? TEXT("{\"include\": [\"EngineTypes.json\"], ") : TEXT("{")) + BodyJson + TEXT("}");
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		FString Error;
		const bool bLoaded = Editor->LoadProjectJson(Json, SampleDirectory, Error);
		if (OutError)
		{
			*OutError = Error;
		}
		else
		{
			EXPECT_TRUE(bLoaded) << UECompatToUtf8(Error);
		}
		return bLoaded ? TSharedPtr<FSimulatedEditorPort>(MakeShared<FSimulatedEditorPort>(Editor)) : nullptr;
	}

	inline FZorvekMCPBridgeObjectHandle FindObject(FSimulatedEditorPort& Port, const TCHAR* ObjectPath)
	{
		const FZorvekMCPBridgeObjectHandle Object = Port.GetObjects().FindObject(ObjectPath);
		EXPECT_TRUE(Object.IsValid()) << UECompatToUtf8(ObjectPath);
		return Object;
	}

	// Runs a tool through the server's dispatch with the port attached, as a client call does.
	class FToolRunner
	{
	public:
		explicit FToolRunner(const TSharedPtr<FSimulatedEditorPort>& InPort)
			: Port(InPort)
			, Server(MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>())
		{
			Server->SetEditorPort(Port);
		}

		TSharedPtr<FJsonObject> Call(const TCHAR* ToolName, const TSharedPtr<FJsonObject>& Arguments)
		{
			const TSharedPtr<FJsonObject> Result = Server->ExecuteTool(ToolName, Arguments);
			EXPECT_TRUE(Result.IsValid()) << "no tool " << UECompatToUtf8(ToolName);
			return Result;
		}

		static bool IsError(const TSharedPtr<FJsonObject>& Result)
		{
			return Result->GetBoolField(TEXT("isError"));
		}

		static TSharedPtr<FJsonObject> Payload(const TSharedPtr<FJsonObject>& Result)
		{
			const TSharedPtr<FJsonObject>* Structured = nullptr;
			return Result->TryGetObjectField(TEXT("structuredContent"), Structured) ? *Structured : nullptr;
		}

		TSharedPtr<FSimulatedEditorPort> Port;
		TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server;
	};

	inline TSharedPtr<FJsonObject> Arguments(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
	{
		TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
		for (const auto& Field : Fields)
		{
			Object->SetField(Field.first, Field.second);
		}
		return Object;
	}

	inline TSharedPtr<FJsonValue> Text(const TCHAR* Value)
	{
		return MakeShared<FJsonValueString>(Value);
	}

	inline TSharedPtr<FJsonValue> Number(double Value)
	{
		return MakeShared<FJsonValueNumber>(Value);
	}

	// The strings of an array of objects at one key, e.g. every candidate's "asset_path".
	inline TArray<FString> Collect(const TArray<TSharedPtr<FJsonValue>>& Items, const TCHAR* Key)
	{
		TArray<FString> Values;
		for (const TSharedPtr<FJsonValue>& Item : Items)
		{
			Values.Add(Item->AsObject()->GetStringField(Key));
		}
		return Values;
	}

	// FString compares ignoring case; tests compare exact text.
	inline std::string S(const FString& Value)
	{
		return UECompatToUtf8(Value);
	}

	inline std::vector<std::string> ToStd(const TArray<FString>& Values)
	{
		std::vector<std::string> Result;
		for (const FString& Value : Values)
		{
			Result.push_back(UECompatToUtf8(Value));
		}
		return Result;
	}

	// A camera object graph as "role:name" lines, depth first, "(cycle)" marking a revisit.
	inline void FlattenCameraGraph(const TSharedPtr<FJsonObject>& Node, std::vector<std::string>& Out)
	{
		const FString Entry = Node->GetStringField(TEXT("role")) + TEXT(":") + Node->GetStringField(TEXT("name"));
		if (Node->HasField(TEXT("cycle")))
		{
			Out.push_back(UECompatToUtf8(Entry + TEXT(" (cycle)")));
			return;
		}
		Out.push_back(UECompatToUtf8(Entry));
		for (const TSharedPtr<FJsonValue>& Child : Node->GetArrayField(TEXT("children")))
		{
			FlattenCameraGraph(Child->AsObject(), Out);
		}
	}
}
