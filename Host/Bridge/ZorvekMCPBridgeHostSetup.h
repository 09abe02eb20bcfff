// The headless host's stand-in for the preferences page and the setup wizard: the same setup
// texts, kept current for the live endpoint, on the console.
#pragma once

#include "CoreMinimal.h"
#include "Setup/ZorvekMCPBridgeSetupTexts.h"

class FAutoConsoleCommand;

class FZorvekMCPBridgeHostSetup
{
public:
	static const TCHAR* const SnippetCommandName;
	static const TCHAR* const WriteConfigCommandName;

	// Registers the console commands "ZorvekMCPBridge.Snippet" and "ZorvekMCPBridge.WriteConfig".
	FZorvekMCPBridgeHostSetup();
	~FZorvekMCPBridgeHostSetup();

	// Called after every start and stop of the bridge.
	void Refresh(const FString& EndpointUrl, bool bRunning);

	const FZorvekMCPBridgeSetupTexts& GetTexts() const { return Texts; }
	const FString& GetEndpointUrl() const { return EndpointUrl; }
	bool IsBridgeRunning() const { return bRunning; }

	// Logs the live endpoint address and the client's snippet, and a warning when the bridge
	// runs on another port than the client's configuration file names; false for an unknown id.
	// An empty id lists the clients.
	bool PrintSnippet(const FString& ClientId) const;
	// Writes the client's configuration file for the live endpoint; false, with the reason
	// logged, for an unknown id, a client whose file the bridge does not write, or a failed write.
	bool WriteConfig(const FString& ClientId) const;

private:
	void HandleSnippetCommand(const TArray<FString>& Arguments);
	void HandleWriteConfigCommand(const TArray<FString>& Arguments);

	FZorvekMCPBridgeSetupTexts Texts;
	FString EndpointUrl;
	bool bRunning = false;
	TUniquePtr<FAutoConsoleCommand> SnippetCommand;
	TUniquePtr<FAutoConsoleCommand> WriteConfigCommand;
};
