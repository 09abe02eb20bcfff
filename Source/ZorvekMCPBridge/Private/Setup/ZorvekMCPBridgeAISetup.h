#pragma once

#include "CoreMinimal.h"

// One AI client the bridge knows how to connect. Empty text means "not offered".
struct FZorvekMCPBridgeClientDescriptor
{
	FString Id;
	FString DisplayName;
	FString TransportLabel;
	// The client's own command that registers the bridge; the arguments hold "{endpoint}".
	FString CliExecutable;
	FString CliInstallArguments;
	// The client's own command that lists its configured servers.
	FString CliVerifyExecutable;
	FString CliVerifyArguments;
	// Absolute path of the client's configuration file ("~" already expanded).
	FString ConfigPath;
	// The member of the server entry that carries the endpoint address.
	FString ConfigUrlKey;
	FString DocumentationUrl;
	bool bConfigWriteEnabled = false;

	bool HasInstallCommand() const { return !CliExecutable.IsEmpty(); }
	bool HasVerifyCommand() const { return !CliVerifyExecutable.IsEmpty(); }
};

namespace ZorvekMCPBridgeAISetup
{
	// The name under which every client knows the bridge.
	extern const TCHAR* const ServerName;
	extern const TCHAR* const EndpointPlaceholder;

	// The supported clients, in the order the wizard lists them.
	TArray<FZorvekMCPBridgeClientDescriptor> BuildClientCatalogue();
	// The client with this id (case-sensitive, ids are lower-case), or null.
	const FZorvekMCPBridgeClientDescriptor* FindClient(const TArray<FZorvekMCPBridgeClientDescriptor>& Catalogue, const FString& ClientId);
	// The result points into the catalogue, so the catalogue must outlive it.
	const FZorvekMCPBridgeClientDescriptor* FindClient(TArray<FZorvekMCPBridgeClientDescriptor>&& Catalogue, const FString& ClientId) = delete;
	// "codex, gemini, ..." for messages about unknown ids.
	FString JoinClientIds(const TArray<FZorvekMCPBridgeClientDescriptor>& Catalogue);

	// The setup text for a client, made for this endpoint address; empty for an unknown id.
	FString BuildSetupSnippet(const FString& ClientId, const FString& EndpointUrl);

	// "~" at the start of a path becomes the user's home folder.
	FString ExpandHomeFolder(const FString& Path);
	// The user's home folder with forward slashes and no trailing slash; empty when unknown.
	FString GetHomeFolder();

	// The install arguments with the endpoint address in place of "{endpoint}".
	FString BuildInstallArguments(const FZorvekMCPBridgeClientDescriptor& Client, const FString& EndpointUrl);
	// The install command as a user would type it; empty when the client has none.
	FString BuildInstallCommandLine(const FZorvekMCPBridgeClientDescriptor& Client, const FString& EndpointUrl);
	FString BuildVerifyCommandLine(const FZorvekMCPBridgeClientDescriptor& Client);
}
