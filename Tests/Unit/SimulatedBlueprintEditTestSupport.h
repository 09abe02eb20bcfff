// A Blueprint of Actor in a simulated editor with the engine's Blueprint types, for the schema,
// compile and catalogue tests: nodes are made through the node library, pins found by name.
#pragma once

#include "AssetTestSupport.h"
#include "SimulatedBlueprint.h"
#include "SimulatedBlueprintPort.h"

namespace ZorvekBlueprintEditTests
{
	using namespace ZorvekAssetTests;

	struct FEditFixture
	{
		TSharedPtr<FSimulatedEditorPort> Port;
		FSimulatedBlueprints* Model = nullptr;
		FSimulatedBlueprint* Blueprint = nullptr;
		FSimulatedGraph* Graph = nullptr;

		explicit FEditFixture(const TCHAR* ParentPath = TEXT("/Script/Engine.Actor"))
		{
			Port = LoadInlineProject(TEXT("\"include\": [\"BlueprintEngineTypes.json\"]"), nullptr, false);
			FSimulatedEditor& Editor = Port->GetEditor();
			Model = &Editor.GetBlueprints();
			FString Error;
			Blueprint = Model->CreateBlueprint(Editor.FindOrCreatePackage(TEXT("/Game/Tests/BP_Edits")), TEXT("BP_Edits"), Editor.FindTypeByPath(ParentPath),
				EZorvekMCPBridgeBlueprintType::Normal, Error);
			EXPECT_NE(Blueprint, nullptr) << S(Error);
			Graph = Blueprint->UbergraphPages[0].get();
		}

		FZorvekMCPBridgeObjectHandle Handle() const { return FSimulatedEditorPort::ToHandle(Blueprint->Object); }
		IZorvekMCPBridgeBlueprints& Blueprints() const { return Port->GetBlueprints(); }

		FZorvekMCPBridgePinType Type(const TCHAR* Category, const TCHAR* SubCategory = nullptr) const
		{
			FZorvekMCPBridgePinType PinType;
			PinType.PinCategory = FName(Category);
			if (SubCategory)
			{
				PinType.PinSubCategory = FName(SubCategory);
			}
			return PinType;
		}

		void AddVariable(const TCHAR* Name, const FZorvekMCPBridgePinType& PinType)
		{
			EXPECT_TRUE(Model->AddMemberVariable(*Blueprint, FName(Name), PinType, FString()));
		}

		const FSimulatedFunction& Function(const TCHAR* ClassPath, const TCHAR* Name) const
		{
			static const FSimulatedFunction Missing;
			const FSimulatedType* Class = Port->GetEditor().FindTypeByPath(ClassPath);
			const FSimulatedFunction* Found = Class ? Class->FindFunction(Name) : nullptr;
			EXPECT_NE(Found, nullptr) << S(Name);
			return Found ? *Found : Missing;
		}

		FSimulatedNode* Call(const TCHAR* ClassPath, const TCHAR* Name, int32 X = 0, int32 Y = 0) const
		{
			return Model->AddCallFunctionNode(*Graph, Function(ClassPath, Name), X, Y);
		}

		FSimulatedNode* BeginPlay() const
		{
			return Model->AddEventNode(*Graph, Function(TEXT("/Script/Engine.Actor"), TEXT("ReceiveBeginPlay")), 0, 600);
		}

		static FSimulatedPin& Pin(FSimulatedNode* Node, const TCHAR* Name)
		{
			FSimulatedPin* Found = Node ? Node->FindPin(Name) : nullptr;
			EXPECT_NE(Found, nullptr) << S(Name);
			static FSimulatedPin Missing;
			return Found ? *Found : Missing;
		}

		bool Link(FSimulatedNode* From, const TCHAR* FromPin, FSimulatedNode* To, const TCHAR* ToPin) const
		{
			return Model->TryCreateConnection(Pin(From, FromPin), Pin(To, ToPin));
		}

		FSimulatedCompilerResultsLog Compile() const
		{
			FSimulatedCompilerResultsLog Log;
			Model->Compile(*Blueprint, &Log);
			return Log;
		}

		static std::vector<std::string> Texts(const FSimulatedCompilerResultsLog& Log)
		{
			std::vector<std::string> Result;
			for (const FSimulatedCompilerMessage& Message : Log.Messages)
			{
				Result.push_back(S(FString(FSimulatedCompilerResultsLog::GetSeverityText(Message.Severity)) + TEXT(": ") + Message.Text));
			}
			return Result;
		}
	};
}
