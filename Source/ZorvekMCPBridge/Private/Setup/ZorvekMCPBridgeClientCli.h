#pragma once

#include "CoreMinimal.h"
#include "Templates/Function.h"

struct FZorvekMCPBridgeClientDescriptor;

// How an outside program is run.
struct FZorvekMCPBridgeProcessOptions
{
	// The folder the program starts in; empty means the editor's own working folder.
	FString WorkingDirectory;
	// Seconds after which the program, and whatever it started, is ended; 0 waits for ever.
	double TimeoutSeconds = 0.0;
};

// What an outside program left behind.
struct FZorvekMCPBridgeProcessResult
{
	// False when the program could not be started at all.
	bool bLaunched = false;
	// True when the program outlived its time and was ended; its exit code then means nothing.
	bool bTimedOut = false;
	// True when it was ended because the module shut down (StopBackgroundActions).
	bool bStopped = false;
	int32 ExitCode = -1;
	FString StdOut;
	FString StdErr;

	bool Succeeded() const { return bLaunched && !bTimedOut && !bStopped && ExitCode == 0; }
};

// Runs an outside program and waits for it. The AI clients' command-line tools are Windows
// programs; tests stand in for them through this.
class IZorvekMCPBridgeProcessRunner
{
public:
	virtual ~IZorvekMCPBridgeProcessRunner() = default;
	virtual FZorvekMCPBridgeProcessResult Run(const FString& Executable, const FString& Arguments, const FZorvekMCPBridgeProcessOptions& Options) = 0;
};

// The engine's process API. The program's output and error output arrive through one pipe, in
// the order it wrote them, as a console would show them; both land in StdOut. Blocks the calling
// thread until the program ends or its time is up, so call it from a worker thread.
class FZorvekMCPBridgePlatformProcessRunner : public IZorvekMCPBridgeProcessRunner
{
public:
	virtual FZorvekMCPBridgeProcessResult Run(const FString& Executable, const FString& Arguments, const FZorvekMCPBridgeProcessOptions& Options) override;
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
	// A client's command may wait on the network, or on a prompt nobody can answer; after this
	// long it is ended and the snippet offered instead.
	extern const double DefaultClientCommandTimeoutSeconds;
	// where.exe only reads the folders on PATH.
	extern const double FindCliTimeoutSeconds;

	// The folder the client commands run in: the Unreal project's, as a full path without a
	// trailing slash. A client that registers servers per project (Claude Code's default scope)
	// then registers the bridge for this project, and its list shows that registration.
	FString GetClientCommandWorkingDirectory();
	// The project folder and the default time limit: how the wizard runs install and verify.
	FZorvekMCPBridgeProcessOptions MakeClientCommandOptions();

	// The command shell: %ComSpec%, or cmd.exe in the system folder when that is not set.
	FString GetCommandShell();
	// The executable in double quotes when the shell would otherwise split or interpret it.
	FString QuoteExecutableForShell(const FString& Executable);
	// The shell's argument text for running one command: /S /C "<executable> <arguments>".
	FString BuildShellArguments(const FString& Executable, const FString& Arguments);

	// Asks "where.exe" for the executable, in the options' folder (where.exe looks there before
	// PATH, as the shell does); true with the first path it printed.
	bool FindCliOnPath(const FString& ExecutableName, FString& OutPath, const FZorvekMCPBridgeProcessOptions& Options,
		IZorvekMCPBridgeProcessRunner& Runner);
	bool FindCliOnPath(const FString& ExecutableName, FString& OutPath);

	// Runs "<executable> <arguments>" through the command shell and waits for it, at most the
	// options' time. bLaunched says whether the shell could be started; exit code 0 is success.
	FZorvekMCPBridgeProcessResult RunClientCommand(const FString& Executable, const FString& Arguments, const FZorvekMCPBridgeProcessOptions& Options,
		IZorvekMCPBridgeProcessRunner& Runner);
	FZorvekMCPBridgeProcessResult RunClientCommand(const FString& Executable, const FString& Arguments, const FZorvekMCPBridgeProcessOptions& Options);

	// The wizard's "run the install command" and "verify" actions: find the client's tool, run
	// it with the options, and word the outcome. Both block; they touch no editor state, so they
	// may run on any thread.
	FZorvekMCPBridgeSetupActionResult InstallWithClientCli(const FZorvekMCPBridgeClientDescriptor& Client, const FString& EndpointUrl,
		const FZorvekMCPBridgeProcessOptions& Options, IZorvekMCPBridgeProcessRunner& Runner);
	// Verify also fails when the client lists the bridge at another port than the running
	// endpoint's (RunningEndpointUrl; empty while the bridge is stopped, which skips that check).
	FZorvekMCPBridgeSetupActionResult VerifyWithClientCli(const FZorvekMCPBridgeClientDescriptor& Client, const FString& RunningEndpointUrl,
		const FZorvekMCPBridgeProcessOptions& Options, IZorvekMCPBridgeProcessRunner& Runner);

	// Runs the action on a worker thread of its own and hands its result to OnFinished on the
	// game thread, so the editor, and the bridge's endpoint with it, keeps answering meanwhile (a
	// client's "mcp list" may call the bridge while the wizard waits for it). The action must not
	// touch editor state; OnFinished may run after its requester is gone, so it should hold only
	// weak references.
	void RunSetupActionInBackground(TUniqueFunction<FZorvekMCPBridgeSetupActionResult()> Action,
		TUniqueFunction<void(const FZorvekMCPBridgeSetupActionResult&)> OnFinished);
	// Ends the programs the background actions run and waits, at most TimeoutSeconds, for their
	// threads to finish; their results are dropped. The module calls it as it shuts down, since
	// a thread running the module's code must not outlive it. True when none is left running.
	bool StopBackgroundActions(double TimeoutSeconds);
}
