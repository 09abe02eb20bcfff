#pragma once

#include "CoreMinimal.h"

struct FZorvekMCPBridgeClientDescriptor;

// Where a client was told to find the bridge, compared with where the bridge runs now. The
// bridge takes the first free port of 8765-8789, so an entry written while it ran on one port
// goes stale when another program holds that port at the next start.
namespace ZorvekMCPBridgeAISetup
{
	// The port an http or https address names, or the scheme's own (80, 443) when it names
	// none; INDEX_NONE when the text is no such address or its port is not a number of 0-65535.
	int32 GetAddressPort(const FString& Address);

	// The address of the "zorvek-unreal" entry in the client's configuration file: its member
	// named by the client's ConfigUrlKey, else "url", "httpUrl" or "serverUrl". False when the
	// client has no file, the file is missing, unreadable or malformed, or holds no such entry.
	bool ReadConfiguredAddress(const FZorvekMCPBridgeClientDescriptor& Client, FString& OutAddress);

	// The address a client's server list shows for "zorvek-unreal" (the first http or https
	// address on a line that names it); false when no line does.
	bool FindListedAddress(const FString& ServerListOutput, FString& OutAddress);

	// Whether the address names another port than the running endpoint. An address without a
	// readable port is not judged, nor is anything while no endpoint runs (empty address).
	bool NamesAnotherPort(const FString& Address, const FString& RunningEndpointUrl);

	// The warning the wizard shows above a client whose configuration file sends it to another
	// port than the running endpoint's; empty when the file agrees, names no bridge, or the
	// bridge is stopped (RunningEndpointUrl empty: its next port is not known yet).
	FString DescribeConfiguredPortMismatch(const FZorvekMCPBridgeClientDescriptor& Client, const FString& RunningEndpointUrl);
}
