#include "ZorvekMCPBridgeHostSetup.h"

#include "HAL/IConsoleManager.h"
#include "Setup/ZorvekMCPBridgeAISetup.h"
#include "Setup/ZorvekMCPBridgeConfigWriter.h"
#include "Setup/ZorvekMCPBridgeConfiguredEndpoint.h"
#include "ZorvekMCPBridge.h"
#include "ZorvekMCPBridgeLog.h"

const TCHAR* const FZorvekMCPBridgeHostSetup::SnippetCommandName = TEXT("ZorvekMCPBridge.Snippet");
const TCHAR* const FZorvekMCPBridgeHostSetup::WriteConfigCommandName = TEXT("ZorvekMCPBridge.WriteConfig");

namespace
{
	void LogUnknownClient(const FString& ClientId, const TArray<FZorvekMCPBridgeClientDescriptor>& Catalogue)
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("Unknown AI client id: %s. Known ids: %s"), *ClientId, *ZorvekMCPBridgeAISetup::JoinClientIds(Catalogue));
	}

	FString FirstArgument(const TArray<FString>& Arguments)
	{
		return Arguments.Num() > 0 ? Arguments[0].TrimStartAndEnd() : FString();
	}
}

FZorvekMCPBridgeHostSetup::FZorvekMCPBridgeHostSetup()
{
	Refresh(FString(), false);
	SnippetCommand = MakeUnique<FAutoConsoleCommand>(SnippetCommandName,
		TEXT("Print an AI client's setup snippet for the live endpoint: ZorvekMCPBridge.Snippet <client-id>. Without an id, list the clients."),
		FConsoleCommandWithArgsDelegate::CreateRaw(this, &FZorvekMCPBridgeHostSetup::HandleSnippetCommand));
	WriteConfigCommand = MakeUnique<FAutoConsoleCommand>(WriteConfigCommandName,
		TEXT("Add the bridge to an AI client's configuration file, after a backup: ZorvekMCPBridge.WriteConfig <client-id>."),
		FConsoleCommandWithArgsDelegate::CreateRaw(this, &FZorvekMCPBridgeHostSetup::HandleWriteConfigCommand));
}

FZorvekMCPBridgeHostSetup::~FZorvekMCPBridgeHostSetup() = default;

void FZorvekMCPBridgeHostSetup::Refresh(const FString& InEndpointUrl, bool bInRunning)
{
	Texts = FZorvekMCPBridgeSetupTexts::Build(InEndpointUrl, bInRunning);
	EndpointUrl = Texts.ServerEndpoint;
	bRunning = bInRunning;
}

bool FZorvekMCPBridgeHostSetup::PrintSnippet(const FString& ClientId) const
{
	const TArray<FZorvekMCPBridgeClientDescriptor> Catalogue = ZorvekMCPBridgeAISetup::BuildClientCatalogue();
	if (ClientId.IsEmpty())
	{
		FString Listing = TEXT("AI clients (ZorvekMCPBridge.Snippet <id>):");
		for (const FZorvekMCPBridgeClientDescriptor& Client : Catalogue)
		{
			Listing += FString::Printf(TEXT("\n  %s - %s (%s)%s"), *Client.Id, *Client.DisplayName, *Client.TransportLabel,
				Client.bConfigWriteEnabled ? TEXT(", ZorvekMCPBridge.WriteConfig can add it") : TEXT(""));
		}
		UE_LOG(LogZorvekMCPBridge, Display, TEXT("%s"), *Listing);
		return true;
	}

	const FZorvekMCPBridgeClientDescriptor* Client = ZorvekMCPBridgeAISetup::FindClient(Catalogue, ClientId);
	if (!Client)
	{
		LogUnknownClient(ClientId, Catalogue);
		return false;
	}
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Zorvek MCP Bridge: %s"), *Texts.ServerStatus);
	// The snippet starts on a line of its own so it can be copied from the console as it is.
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Setup snippet for %s (%s):\n%s"), *Client->DisplayName, *Client->Id,
		*ZorvekMCPBridgeAISetup::BuildSetupSnippet(Client->Id, EndpointUrl));
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("%s documentation: %s"), *Client->DisplayName, *Client->DocumentationUrl);
	const FString PortWarning = ZorvekMCPBridgeAISetup::DescribeConfiguredPortMismatch(*Client, bRunning ? EndpointUrl : FString());
	if (!PortWarning.IsEmpty())
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("%s"), *PortWarning);
	}
	return true;
}

bool FZorvekMCPBridgeHostSetup::WriteConfig(const FString& ClientId) const
{
	const TArray<FZorvekMCPBridgeClientDescriptor> Catalogue = ZorvekMCPBridgeAISetup::BuildClientCatalogue();
	const FZorvekMCPBridgeClientDescriptor* Client = ZorvekMCPBridgeAISetup::FindClient(Catalogue, ClientId);
	if (!Client)
	{
		LogUnknownClient(ClientId, Catalogue);
		return false;
	}
	if (!Client->bConfigWriteEnabled)
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("The bridge does not write the configuration of %s; print its snippet with %s %s and add it by hand."),
			*Client->DisplayName, SnippetCommandName, *Client->Id);
		return false;
	}
	// The writer logs its own outcome.
	FString Message;
	return ZorvekMCPBridgeAISetup::WriteClientConfig(*Client, EndpointUrl, Message);
}

void FZorvekMCPBridgeHostSetup::HandleSnippetCommand(const TArray<FString>& Arguments)
{
	PrintSnippet(FirstArgument(Arguments));
}

void FZorvekMCPBridgeHostSetup::HandleWriteConfigCommand(const TArray<FString>& Arguments)
{
	const FString ClientId = FirstArgument(Arguments);
	if (ClientId.IsEmpty())
	{
		TArray<FString> WritableIds;
		for (const FZorvekMCPBridgeClientDescriptor& Client : ZorvekMCPBridgeAISetup::BuildClientCatalogue())
		{
			if (Client.bConfigWriteEnabled)
			{
				WritableIds.Add(Client.Id);
			}
		}
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("Usage: %s <client-id>. Clients whose configuration the bridge writes: %s"), WriteConfigCommandName,
			*FString::Join(WritableIds, TEXT(", ")));
		return;
	}
	WriteConfig(ClientId);
}
