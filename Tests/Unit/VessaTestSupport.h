// Helpers of the Vessa tests: the sample project with its extensions, extension classes made on
// the spot, and the registry left clean after each test.
#pragma once

#include "AssetTestSupport.h"
#include "Extensions/ZorvekMCPBridgeVessaExtensionLogic.h"
#include "Extensions/ZorvekMCPBridgeVessaExtensionRegistry.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "SimulatedFunctions.h"

namespace ZorvekVessaTests
{
	inline const TCHAR* const LevelToolsId = TEXT("/Game/Vessa/BP_LevelTools.BP_LevelTools_C");
	inline const TCHAR* const ShowcaseId = TEXT("/Script/SampleGame.VessaParameterShowcase");
	inline const TCHAR* const HiddenId = TEXT("/Script/SampleGame.VessaHiddenTools");
	inline const TCHAR* const FailingId = TEXT("/Script/SampleGame.VessaFailingTools");
	inline const TCHAR* const AuditId = TEXT("/Game/Vessa/EUB_AssetAudit.EUB_AssetAudit_C");
	inline const TCHAR* const SystemId = TEXT("/Script/ZorvekMCPBridge.ZorvekMCPBridgeVessaSystemExtension");

	// The sample project with its extensions, as the host serves it.
	inline TSharedPtr<FSimulatedEditorPort> LoadSampleWithExtensions()
	{
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		FString Error;
		EXPECT_TRUE(Editor->LoadProjectFile(GetSimulatedSampleProjectFile(), Error)) << UECompatToUtf8(Error);
		SimulatedVessa::RegisterSamples(*Editor);
		return MakeShared<FSimulatedEditorPort>(Editor);
	}

	// A new extension class on the spot (a native one unless the path is a /Game path).
	inline FSimulatedType* AddExtensionClass(FSimulatedEditorPort& Port, const TCHAR* Path, const TCHAR* Name = TEXT(""), const TCHAR* Description = TEXT(""))
	{
		FString Error;
		FSimulatedType* Class = Port.GetEditor().AddClass(Path, SimulatedVessa::ExtensionBaseClassPath, 0, Error);
		EXPECT_TRUE(Class != nullptr) << UECompatToUtf8(Error);
		FSimulatedVessaClassDefault& Default = Port.GetEditor().GetVessaState().ClassDefaults[Class];
		Default.Definition.ExtensionName = Name;
		Default.Definition.ExtensionDescription = Description;
		return Class;
	}

	inline FZorvekMCPBridgeVessaDefinitionData GetDefinition(FSimulatedEditorPort& Port, const TCHAR* ClassPath)
	{
		FSimulatedVessaClassDefault* Default = Port.GetSimulatedFunctions().GetClassDefault(ClassPath);
		EXPECT_TRUE(Default != nullptr) << UECompatToUtf8(ClassPath);
		return Default ? Default->Definition : FZorvekMCPBridgeVessaDefinitionData();
	}

	inline TSharedPtr<FJsonObject> ParseObject(const FString& Text)
	{
		TSharedPtr<FJsonObject> Object;
		const TSharedRef<TJsonReader<TCHAR>> Reader = TJsonReaderFactory<TCHAR>::Create(Text);
		EXPECT_TRUE(FJsonSerializer::Deserialize(Reader, Object)) << UECompatToUtf8(Text);
		return Object;
	}

	inline TSharedPtr<FJsonObject> Object(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
	{
		return ZorvekAssetTests::Arguments(Fields);
	}

	inline TSharedPtr<FJsonValue> ObjectValue(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
	{
		return MakeShared<FJsonValueObject>(Object(Fields));
	}

	// Leaves no registry behind: each test's editor is its own.
	class FVessaTest : public ::testing::Test
	{
	protected:
		void TearDown() override
		{
			FZorvekMCPBridgeVessaExtensionRegistry::Shutdown();
			ZorvekMCPBridgeVessaReports::ClearError();
			ZorvekMCPBridgeVessaReports::ClearResults();
		}
	};
}
