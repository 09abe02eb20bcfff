#include "Pcg/ZorvekMCPBridgePcgProbe.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeWorldPort.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

const TCHAR* const ZorvekMCPBridgePcgProbe::PluginName = TEXT("PCG");

namespace
{
	TSharedPtr<FJsonValue> NormalisePcgRequestValue(const TSharedPtr<FJsonValue>& Value)
	{
		if (Value->Type == EJson::String || Value->Type == EJson::Number || Value->Type == EJson::Boolean)
		{
			FString Text;
			Value->TryGetString(Text);
			return MakeShared<FJsonValueString>(Text.TrimStartAndEnd());
		}
		return Value;
	}
}

FZorvekMCPBridgePcgStatus ZorvekMCPBridgePcgProbe::Probe(const IZorvekMCPBridgeWorld& World)
{
	const FZorvekMCPBridgePluginState Plugin = World.GetPluginState(PluginName);
	FZorvekMCPBridgePcgStatus Status;
	Status.bInstalled = Plugin.bInstalled;
	Status.bEnabled = Plugin.bInstalled && Plugin.bEnabled;
	Status.bModuleExists = World.ModuleExists(PluginName);
	Status.bModuleLoaded = World.IsModuleLoaded(PluginName);
	return Status;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgProbe::MakeStatusObject(const FZorvekMCPBridgePcgStatus& Status)
{
	TSharedPtr<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetBoolField(TEXT("pcg_installed"), Status.bInstalled);
	Object->SetBoolField(TEXT("pcg_enabled"), Status.bEnabled);
	Object->SetBoolField(TEXT("pcg_module_exists"), Status.bModuleExists);
	Object->SetBoolField(TEXT("pcg_module_loaded"), Status.bModuleLoaded);
	Object->SetBoolField(TEXT("pcg_available"), Status.IsAvailable());
	Object->SetStringField(TEXT("plugin_name"), PluginName);
	return Object;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgProbe::MakeForestRequestSummary(const TSharedPtr<FJsonObject>& Arguments)
{
	TSharedPtr<FJsonObject> Summary = MakeShared<FJsonObject>();
	Summary->SetStringField(TEXT("forest_actor_name_or_label"), ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("ForestActorNameOrLabel"), FString()).TrimStartAndEnd());
	TSharedPtr<FJsonObject> Normalised = MakeShared<FJsonObject>();
	if (Arguments.IsValid())
	{
		for (const TPair<FString, TSharedPtr<FJsonValue>>& Argument : Arguments->Values)
		{
			// A null says nothing about the request.
			if (Argument.Value.IsValid() && Argument.Value->Type != EJson::Null)
			{
				Normalised->SetField(Argument.Key, NormalisePcgRequestValue(Argument.Value));
			}
		}
	}
	Summary->SetNumberField(TEXT("argument_count"), Normalised->Values.Num());
	Summary->SetObjectField(TEXT("arguments"), Normalised);
	return Summary;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgProbe::MakeUnavailablePayload(const IZorvekMCPBridgeWorld& World, const FString& ToolName, const TSharedPtr<FJsonObject>& Arguments, const FString& Operation)
{
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), false);
	Payload->SetBoolField(TEXT("created"), false);
	Payload->SetBoolField(TEXT("placed"), false);
	Payload->SetBoolField(TEXT("generated"), false);
	Payload->SetBoolField(TEXT("available"), false);
	Payload->SetStringField(TEXT("tool"), ToolName);
	Payload->SetStringField(TEXT("operation"), Operation);
	Payload->SetStringField(TEXT("status"), TEXT("pcg_unavailable"));
	// One text for every PCG tool, forest wording included, so agents learn one sentence.
	Payload->SetStringField(TEXT("error"), TEXT("PCG is not enabled and loadable in this project. Enable the PCG plugin and restart/rebuild before running PCG forest generation."));
	Payload->SetObjectField(TEXT("pcg_status"), MakeStatusObject(Probe(World)));
	Payload->SetObjectField(TEXT("request"), MakeForestRequestSummary(Arguments));
	TArray<TSharedPtr<FJsonValue>> NextSteps;
	NextSteps.Add(MakeShared<FJsonValueString>(TEXT("Enable the PCG plugin for the project if PCG generation is desired.")));
	NextSteps.Add(MakeShared<FJsonValueString>(TEXT("Restart Unreal so PCG classes/modules are available.")));
	NextSteps.Add(MakeShared<FJsonValueString>(TEXT("Run pcg_get_status again before mutating the editor world.")));
	Payload->SetArrayField(TEXT("next_steps"), NextSteps);
	return Payload;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgProbe::MakeUnavailableResult(const IZorvekMCPBridgeWorld& World, const FString& ToolName, const TSharedPtr<FJsonObject>& Arguments, const FString& Operation)
{
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(MakeUnavailablePayload(World, ToolName, Arguments, Operation), true);
}
