#pragma once

#include "CoreMinimal.h"
#include "Misc/DateTime.h"

class IFileManager;
struct FZorvekMCPBridgeClientDescriptor;

// Adds the bridge to a client's JSON configuration file: only "mcpServers" -> "zorvek-unreal"
// changes, the previous file is kept as a timestamped backup first, and the new text goes to a
// temporary file that is moved into place, so a failure never leaves a half-written file. The
// file is written as UTF-8 without a byte-order mark, which every client reads.
class FZorvekMCPBridgeConfigWriter
{
public:
	// The file manager and the clock are parameters so the rare failures (a move that fails
	// after the delete, two writes in one second) can be reproduced on purpose.
	FZorvekMCPBridgeConfigWriter();
	FZorvekMCPBridgeConfigWriter(IFileManager& InFileManager, TFunction<FDateTime()> InClock);

	bool Write(const FZorvekMCPBridgeClientDescriptor& Client, const FString& EndpointUrl, FString& OutMessage) const;

	// "<path>.zorvek-backup-<YYYYmmdd-HHMMSS>" next to the file.
	static FString MakeBackupPath(const FString& ConfigPath, const FDateTime& Time);
	static FString MakeTemporaryPath(const FString& ConfigPath);

private:
	IFileManager& FileManager;
	TFunction<FDateTime()> Clock;
};

namespace ZorvekMCPBridgeAISetup
{
	// Writes the client's configuration file for this endpoint address with the engine's file
	// manager and the local time; false with the reason in OutMessage.
	bool WriteClientConfig(const FZorvekMCPBridgeClientDescriptor& Client, const FString& EndpointUrl, FString& OutMessage);
}
