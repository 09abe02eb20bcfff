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

// What an outside program left behind.
struct FZorvekMCPBridgeProcessResult
{
	// False when the program could not be started at all.
	bool bLaunched = false;
	int32 ExitCode = -1;
	FString StdOut;
	FString StdErr;

	bool Succeeded() const { return bLaunched && ExitCode == 0; }
};

// Runs an outside program and waits for it. The AI clients' command-line tools are Windows
// programs; tests stand in for them through this.
class IZorvekMCPBridgeProcessRunner
{
public:
	virtual ~IZorvekMCPBridgeProcessRunner() = default;
	virtual FZorvekMCPBridgeProcessResult Run(const FString& Executable, const FString& Arguments) = 0;
};

// The engine's own process execution.
class FZorvekMCPBridgePlatformProcessRunner : public IZorvekMCPBridgeProcessRunner
{
public:
	virtual FZorvekMCPBridgeProcessResult Run(const FString& Executable, const FString& Arguments) override;
};

// The outcome of a wizard action (running a client's install or verify command), worded for
// the user, with the snippet as the way out whenever the command route fails.
struct FZorvekMCPBridgeSetupActionResult
{
	bool bSucceeded = false;
	// True when the user should fall back to copying the snippet by hand.
	bool bFallBackToSnippet = false;
	FString Message;
	// What the command printed (standard output, then error output).
	FString Output;
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

	// The command shell: %ComSpec%, or cmd.exe in the system folder when that is not set.
	FString GetCommandShell();
	// The executable in double quotes when the shell would otherwise split or interpret it.
	FString QuoteExecutableForShell(const FString& Executable);
	// The shell's argument text for running one command: /S /C "<executable> <arguments>".
	FString BuildShellArguments(const FString& Executable, const FString& Arguments);

	// Asks "where.exe" for the executable; true with the first path it printed.
	bool FindCliOnPath(const FString& ExecutableName, FString& OutPath,
		IZorvekMCPBridgeProcessRunner& Runner);
	bool FindCliOnPath(const FString& ExecutableName, FString& OutPath);

	// Runs "<executable> <arguments>" through the command shell and waits for it. Returns whether
	// the shell could be started; exit code 0 is success.
	bool RunClientCommand(const FString& Executable, const FString& Arguments, int32& OutExitCode, FString& OutStdOut, FString& OutStdErr,
		IZorvekMCPBridgeProcessRunner& Runner);
	bool RunClientCommand(const FString& Executable, const FString& Arguments, int32& OutExitCode, FString& OutStdOut, FString& OutStdErr);

	// The wizard's "run the install command" and "verify" actions: find the client's tool, run
	// it, and word the outcome.
	FZorvekMCPBridgeSetupActionResult InstallWithClientCli(const FZorvekMCPBridgeClientDescriptor& Client, const FString& EndpointUrl,
		IZorvekMCPBridgeProcessRunner& Runner);
	FZorvekMCPBridgeSetupActionResult VerifyWithClientCli(const FZorvekMCPBridgeClientDescriptor& Client,
		IZorvekMCPBridgeProcessRunner& Runner);
}
