// The editor module as the editor drives it: start-up, automatic start, console commands,
// menu labels and shut-down.
#include "ZorvekTestSupport.h"

#include "Containers/Ticker.h"
#include "HAL/IConsoleManager.h"
#include "Misc/ConfigCacheIni.h"
#include "ZorvekMCPBridge.h"

class FZorvekMCPBridgeModuleTestAccess
{
public:
	static bool IsRunning(const FZorvekMCPBridgeModule& Module) { return Module.IsBridgeRunning(); }
	static FString EndpointUrl(const FZorvekMCPBridgeModule& Module) { return Module.GetCurrentEndpointUrl(); }
	static FString ToggleLabel(const FZorvekMCPBridgeModule& Module) { return Module.GetToggleBridgeLabel().ToString(); }
	static FString StatusLabel(const FZorvekMCPBridgeModule& Module) { return Module.GetBridgeStatusLabel().ToString(); }
	static void Toggle(FZorvekMCPBridgeModule& Module) { Module.ToggleBridge(); }
};

namespace
{
	using FAccess = FZorvekMCPBridgeModuleTestAccess;

	bool RunConsole(const TCHAR* Command)
	{
		return IConsoleManager::Get().ProcessUserConsoleInput(Command, *GLog, nullptr);
	}

	class ModuleLifecycle : public ::testing::Test
	{
	protected:
		void TearDown() override
		{
			Module.ShutdownModule();
			GConfig->Clear(GEngineIni);
		}

		void DisableAutoStart()
		{
			ASSERT_TRUE(GConfig->LoadFromText(GEngineIni, TEXT("[ZorvekMCPBridge]\nbAutoStart=False\n")));
		}

		FLogCapture Log;
		FZorvekMCPBridgeModule Module;
	};
}

TEST_F(ModuleLifecycle, StartsByItselfATenthOfASecondAfterStartUp)
{
	Module.StartupModule();
	EXPECT_EQ(Log.VerbosityOf(TEXT("Zorvek MCP Bridge module starting")), ELogVerbosity::Log);
	EXPECT_EQ(Log.VerbosityOf(TEXT("Registered console commands: ZorvekMCPBridge.Start, ZorvekMCPBridge.Stop, ZorvekMCPBridge.Status")), ELogVerbosity::Display);
	EXPECT_TRUE(Log.Contains(TEXT("Scheduling Zorvek MCP Bridge auto-start")));
	EXPECT_FALSE(FAccess::IsRunning(Module));

	FTSTicker::GetCoreTicker().Tick(0.05f);
	EXPECT_FALSE(FAccess::IsRunning(Module));
	FTSTicker::GetCoreTicker().Tick(0.06f);
	EXPECT_TRUE(FAccess::IsRunning(Module));
	EXPECT_TRUE(Log.Contains(TEXT("Auto-starting Zorvek MCP Bridge")));
	EXPECT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge running at http://127.0.0.1:8765/mcp")));

	// The ticker ran once.
	FTSTicker::GetCoreTicker().Tick(1.0f);
	EXPECT_EQ(Log.Count(TEXT("Auto-starting Zorvek MCP Bridge")), 1);
}

TEST_F(ModuleLifecycle, InACommandletNothingStartsByItselfButTheConsoleStillCan)
{
	// A cook or resave loads editor modules too; it must not take the editor's port.
	UECompatSetRunningCommandlet(true);
	Module.StartupModule();
	UECompatSetRunningCommandlet(false);
	EXPECT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge does not start automatically in a commandlet")));
	EXPECT_FALSE(Log.Contains(TEXT("Scheduling Zorvek MCP Bridge auto-start")));
	FTSTicker::GetCoreTicker().Tick(1.0f);
	EXPECT_FALSE(FAccess::IsRunning(Module));

	EXPECT_TRUE(RunConsole(TEXT("ZorvekMCPBridge.Start")));
	EXPECT_TRUE(FAccess::IsRunning(Module));
}

TEST_F(ModuleLifecycle, DisabledAutoStartLeavesTheBridgeStoppedUntilAsked)
{
	DisableAutoStart();
	Module.StartupModule();
	EXPECT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge auto-start is disabled")));
	FTSTicker::GetCoreTicker().Tick(1.0f);
	EXPECT_FALSE(FAccess::IsRunning(Module));

	EXPECT_TRUE(RunConsole(TEXT("ZorvekMCPBridge.Status")));
	EXPECT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge status: stopped")));
	EXPECT_TRUE(FAccess::EndpointUrl(Module).Equals(TEXT("http://127.0.0.1:8765/mcp")));
	EXPECT_TRUE(FAccess::ToggleLabel(Module).Equals(TEXT("Start Zorvek MCP Bridge")));
	EXPECT_TRUE(FAccess::StatusLabel(Module).Equals(TEXT("Start the local MCP endpoint for Codex.")));

	EXPECT_TRUE(RunConsole(TEXT("ZorvekMCPBridge.Start")));
	EXPECT_TRUE(FAccess::IsRunning(Module));
	EXPECT_TRUE(RunConsole(TEXT("ZorvekMCPBridge.Status")));
	EXPECT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge status: running at http://127.0.0.1:8765/mcp")));
	EXPECT_TRUE(FAccess::ToggleLabel(Module).Equals(TEXT("Stop Zorvek MCP Bridge")));
	EXPECT_TRUE(FAccess::StatusLabel(Module).Equals(TEXT("Local MCP endpoint is running at http://127.0.0.1:8765/mcp")));

	EXPECT_TRUE(RunConsole(TEXT("ZorvekMCPBridge.Stop")));
	EXPECT_TRUE(Log.Contains(TEXT("StopBridge requested")));
	EXPECT_FALSE(FAccess::IsRunning(Module));
}

TEST_F(ModuleLifecycle, TheShownAddressFollowsThePortWhileStoppedShowsTheDefault)
{
	DisableAutoStart();
	FPortBlocker Blocker(8765);
	ASSERT_TRUE(Blocker.IsHeld());
	Module.StartupModule();
	FAccess::Toggle(Module);
	EXPECT_TRUE(Log.Contains(TEXT("ToggleBridge requested. Current state: stopped")));
	EXPECT_TRUE(FAccess::EndpointUrl(Module).Equals(TEXT("http://127.0.0.1:8766/mcp")));
	EXPECT_TRUE(FAccess::StatusLabel(Module).Equals(TEXT("Local MCP endpoint is running at http://127.0.0.1:8766/mcp")));
	FAccess::Toggle(Module);
	EXPECT_TRUE(Log.Contains(TEXT("ToggleBridge requested. Current state: running")));
	EXPECT_TRUE(FAccess::EndpointUrl(Module).Equals(TEXT("http://127.0.0.1:8765/mcp")));
}

TEST_F(ModuleLifecycle, ShutdownActsOnceAndCancelsAPendingStart)
{
	Module.StartupModule();
	Module.ShutdownModule();
	Module.ShutdownModule();
	EXPECT_EQ(Log.Count(TEXT("Zorvek MCP Bridge module shutting down")), 1);
	EXPECT_EQ(IConsoleManager::Get().FindConsoleObject(TEXT("ZorvekMCPBridge.Start")), nullptr);
	EXPECT_EQ(IConsoleManager::Get().FindConsoleObject(TEXT("ZorvekMCPBridge.Status")), nullptr);
	FTSTicker::GetCoreTicker().Tick(1.0f);
	EXPECT_FALSE(Log.Contains(TEXT("Auto-starting Zorvek MCP Bridge")));
	EXPECT_FALSE(FAccess::IsRunning(Module));
}

TEST_F(ModuleLifecycle, ShutdownStopsARunningBridge)
{
	DisableAutoStart();
	Module.StartupModule();
	EXPECT_TRUE(RunConsole(TEXT("ZorvekMCPBridge.Start")));
	Module.ShutdownModule();
	EXPECT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge stopped")));
	EXPECT_FALSE(PostMcp(8765, "{\"method\":\"ping\"}").bReceived);
}
