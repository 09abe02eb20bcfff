// The discovery tools: bridge status, the capability manifest and the keyword router that
// points an agent at the tools for its task.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

class FJsonValue;

struct FZorvekMCPBridgeToolContext;
class FZorvekMCPBridgeServer;

namespace ZorvekMCPBridgeDiscoveryTools
{
	// Section of the engine configuration that holds the bridge's settings.
	extern const TCHAR* const ConfigSection;
	// Keys of that section naming the maker's support channels; absent means not configured.
	extern const TCHAR* const SupportDiscordConfigKey;
	extern const TCHAR* const SupportEmailConfigKey;

	// Tool handlers.
	TSharedPtr<FJsonObject> HandleGetStatus(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleGetCapabilities(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleRecommendTools(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);

	TSharedPtr<FJsonObject> BuildStatusPayload(const FZorvekMCPBridgeServer& Server);

	// The capability manifest, built anew on every call.
	TSharedPtr<FJsonObject> BuildCapabilityManifest();

	// Every capability id with its support flag, in manifest order.
	struct FCapability
	{
		const TCHAR* Id;
		bool bSupported;
	};
	const TArray<FCapability>& GetCapabilities();

	// "support_contact": the configured channels (empty when not configured) and how to use them.
	TSharedPtr<FJsonObject> BuildSupportContact();
	// One sentence naming the fastest configured support channel, or saying that none is.
	FString DescribeSupportChannels();

	TArray<TSharedPtr<FJsonValue>> ToJsonStringArray(const TArray<FString>& Strings);

	// The router: lower-cases the text and drops blanks, "_", "-", "(" and ")", so that
	// "Primary Data-Asset" and "primarydataasset" compare equal.
	FString NormalizeRoutingText(const FString& Text);

	// The recommendation payload for a task and its optional hints (the Task must not be empty).
	TSharedPtr<FJsonObject> BuildToolRecommendation(const FString& Task, const FString& Domain, const FString& Intent, const FString& AssetType);
}
