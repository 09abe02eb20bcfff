#include "Tools/ZorvekMCPBridgeDiscoveryTools.h"

#include "Dom/JsonValue.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/EngineVersion.h"
#include "Server/ZorvekMCPBridgeServer.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"

const TCHAR* const ZorvekMCPBridgeDiscoveryTools::ConfigSection = TEXT("ZorvekMCPBridge");
const TCHAR* const ZorvekMCPBridgeDiscoveryTools::SupportDiscordConfigKey = TEXT("SupportDiscord");
const TCHAR* const ZorvekMCPBridgeDiscoveryTools::SupportEmailConfigKey = TEXT("SupportEmail");

namespace
{
	FString ReadSupportSetting(const TCHAR* Key)
	{
		FString Value;
		if (GConfig)
		{
			GConfig->GetString(ZorvekMCPBridgeDiscoveryTools::ConfigSection, Key, Value, GEngineIni);
		}
		return Value.TrimStartAndEnd();
	}

	FString ReadStringArgument(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Name)
	{
		FString Value;
		if (Arguments.IsValid())
		{
			Arguments->TryGetStringField(Name, Value);
		}
		return Value;
	}
}

TArray<TSharedPtr<FJsonValue>> ZorvekMCPBridgeDiscoveryTools::ToJsonStringArray(const TArray<FString>& Strings)
{
	TArray<TSharedPtr<FJsonValue>> Values;
	for (const FString& String : Strings)
	{
		Values.Add(MakeShared<FJsonValueString>(String));
	}
	return Values;
}

FString ZorvekMCPBridgeDiscoveryTools::DescribeSupportChannels()
{
	const FString Discord = ReadSupportSetting(SupportDiscordConfigKey);
	const FString Email = ReadSupportSetting(SupportEmailConfigKey);
	if (!Discord.IsEmpty() && !Email.IsEmpty())
	{
		return FString::Printf(TEXT("The fastest channel is the Zorvek Discord (%s); e-mail to %s works as well."), *Discord, *Email);
	}
	if (!Discord.IsEmpty())
	{
		return FString::Printf(TEXT("The fastest channel is the Zorvek Discord (%s)."), *Discord);
	}
	if (!Email.IsEmpty())
	{
		return FString::Printf(TEXT("The fastest channel is e-mail to %s."), *Email);
	}
	return TEXT("No support channel is configured in this installation, so the user should pass the report to whoever provided their copy of Zorvek MCP Bridge.");
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDiscoveryTools::BuildSupportContact()
{
	TSharedPtr<FJsonObject> Contact = MakeShared<FJsonObject>();
	Contact->SetStringField(TEXT("discord"), ReadSupportSetting(SupportDiscordConfigKey));
	Contact->SetStringField(TEXT("email"), ReadSupportSetting(SupportEmailConfigKey));
	Contact->SetStringField(TEXT("guidance"), FString(TEXT("When a bridge limitation or error blocks the user, ask them to report the exact task, tool call, error text, Unreal version, and relevant asset paths. ")) + DescribeSupportChannels());
	Contact->SetStringField(TEXT("message_template"), TEXT("I hit a Zorvek MCP Bridge limitation/error. Task: <task>. Tool/result: <tool and error>. Unreal version: <version>. Assets: <paths>. What feature or fix would unblock this?"));
	return Contact;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDiscoveryTools::BuildStatusPayload(const FZorvekMCPBridgeServer& Server)
{
	const bool bRunning = Server.IsRunning();
	TSharedPtr<FJsonObject> Status = MakeShared<FJsonObject>();
	Status->SetBoolField(TEXT("running"), bRunning);
	Status->SetNumberField(TEXT("port"), bRunning ? Server.GetPort() : 0);
	Status->SetStringField(TEXT("endpoint_url"), bRunning ? Server.GetEndpointUrl() : FString(TEXT("stopped")));
	// The headless host's version names its simulated editor in the branch, so the full text
	// (not just major.minor.patch) tells a real editor from the simulation.
	Status->SetStringField(TEXT("unreal_version"), FEngineVersion::Current().ToString(EVersionComponent::Branch));
	Status->SetBoolField(TEXT("standalone"), true);
	Status->SetStringField(TEXT("backend"), TEXT("native_unreal_editor"));
	Status->SetStringField(TEXT("capabilities_endpoint"), TEXT("unreal_get_capabilities"));
	Status->SetStringField(TEXT("discovery_note"), TEXT("Call unreal_get_capabilities before concluding a Zorvek Blueprint capability is unavailable. Some hosts expose MCP tools lazily."));
	Status->SetObjectField(TEXT("capabilities"), BuildCapabilityManifest());
	return Status;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDiscoveryTools::HandleGetStatus(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(BuildStatusPayload(Context.Server), false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDiscoveryTools::HandleGetCapabilities(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(BuildCapabilityManifest(), false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDiscoveryTools::HandleRecommendTools(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const FString Task = ReadStringArgument(Arguments, TEXT("Task"));
	if (Task.IsEmpty())
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(TEXT("unreal_recommend_tools requires Task."), true);
	}
	const TSharedPtr<FJsonObject> Recommendation = BuildToolRecommendation(Task,
		ReadStringArgument(Arguments, TEXT("Domain")),
		ReadStringArgument(Arguments, TEXT("Intent")),
		ReadStringArgument(Arguments, TEXT("AssetType")));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Recommendation, false);
}
