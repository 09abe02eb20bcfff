#include "ZorvekMCPBridge.h"

#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Extensions/ZorvekMCPBridgeVessaExtensionRegistry.h"
#include "HAL/IConsoleManager.h"
#include "Misc/ConfigCacheIni.h"
#include "Modules/ModuleManager.h"
#include "Server/ZorvekMCPBridgeServer.h"
#include "Setup/ZorvekMCPBridgeClientCli.h"
#include "ZorvekMCPBridgeLog.h"

#define LOCTEXT_NAMESPACE "FZorvekMCPBridgeModule"

namespace
{
	const TCHAR* const ConfigSection = TEXT("ZorvekMCPBridge");
	const TCHAR* const AutoStartKey = TEXT("bAutoStart");
	constexpr float AutoStartDelaySeconds = 0.1f;
	constexpr double BackgroundActionStopSeconds = 5.0;
}

const TCHAR* const FZorvekMCPBridgeModule::DefaultEndpointUrl = TEXT("http://127.0.0.1:8765/mcp");

FZorvekMCPBridgeModule::FZorvekMCPBridgeModule() = default;

FZorvekMCPBridgeModule::~FZorvekMCPBridgeModule() = default;

FZorvekMCPBridgeModule::FZorvekMCPBridgeModule(FZorvekMCPBridgeModule&& Other) = default;

FZorvekMCPBridgeModule& FZorvekMCPBridgeModule::operator=(FZorvekMCPBridgeModule&& Other) = default;

void FZorvekMCPBridgeModule::StartupModule()
{
	UE_LOG(LogZorvekMCPBridge, Log, TEXT("Zorvek MCP Bridge module starting"));

	EditorPort = CreateZorvekMCPBridgeEditorPort();
	Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
	Server->SetEditorPort(EditorPort);

	StartCommand = MakeUnique<FAutoConsoleCommand>(TEXT("ZorvekMCPBridge.Start"), TEXT("Start the local Zorvek MCP Bridge endpoint."),
		FConsoleCommandDelegate::CreateRaw(this, &FZorvekMCPBridgeModule::StartBridge));
	StopCommand = MakeUnique<FAutoConsoleCommand>(TEXT("ZorvekMCPBridge.Stop"), TEXT("Stop the local Zorvek MCP Bridge endpoint."),
		FConsoleCommandDelegate::CreateRaw(this, &FZorvekMCPBridgeModule::StopBridge));
	StatusCommand = MakeUnique<FAutoConsoleCommand>(TEXT("ZorvekMCPBridge.Status"), TEXT("Log the local Zorvek MCP Bridge endpoint status."),
		FConsoleCommandDelegate::CreateRaw(this, &FZorvekMCPBridgeModule::LogBridgeStatus));
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Registered console commands: ZorvekMCPBridge.Start, ZorvekMCPBridge.Stop, ZorvekMCPBridge.Status"));

	RegisterMenuStartupCallback();
	RegisterEditorSettings();
	ScheduleAutoStart();
}

void FZorvekMCPBridgeModule::ShutdownModule()
{
	if (bShutdownStarted)
	{
		return;
	}
	bShutdownStarted = true;

	UE_LOG(LogZorvekMCPBridge, Log, TEXT("Zorvek MCP Bridge module shutting down"));

	if (AutoStartTickerHandle.IsValid())
	{
		FTSTicker::RemoveTicker(AutoStartTickerHandle);
		AutoStartTickerHandle.Reset();
	}

	if (Server.IsValid())
	{
		Server->Stop();
		Server.Reset();
	}
	EditorPort.Reset();
	// A client command the setup wizard started runs on a thread of the module's own.
	if (!ZorvekMCPBridgeAISetup::StopBackgroundActions(BackgroundActionStopSeconds))
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("A client command of the setup wizard did not stop in time"));
	}

	StartCommand.Reset();
	StopCommand.Reset();
	StatusCommand.Reset();

	UnregisterEditorSettings();
	SettingsObject = nullptr;
	FZorvekMCPBridgeVessaExtensionRegistry::Shutdown();
	UnregisterMenus();
}

void FZorvekMCPBridgeModule::StartBridge()
{
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("StartBridge requested"));
	if (!Server.IsValid())
	{
		UE_LOG(LogZorvekMCPBridge, Display, TEXT("Bridge server was not allocated; creating it now"));
		Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
		Server->SetEditorPort(EditorPort);
	}

	if (Server->Start(FZorvekMCPBridgeServer::DefaultPort))
	{
		UE_LOG(LogZorvekMCPBridge, Display, TEXT("Zorvek MCP Bridge running at %s"), *Server->GetEndpointUrl());
		// A failed start leaves the preferences page as it was; the server has logged why.
		RefreshEditorSettings();
	}
}

void FZorvekMCPBridgeModule::StopBridge()
{
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("StopBridge requested"));
	if (Server.IsValid())
	{
		Server->Stop();
	}
	RefreshEditorSettings();
}

void FZorvekMCPBridgeModule::ToggleBridge()
{
	const bool bRunning = IsBridgeRunning();
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("ToggleBridge requested. Current state: %s"), bRunning ? TEXT("running") : TEXT("stopped"));
	if (bRunning)
	{
		StopBridge();
	}
	else
	{
		StartBridge();
	}
}

bool FZorvekMCPBridgeModule::IsBridgeRunning() const
{
	return Server.IsValid() && Server->IsRunning();
}

FString FZorvekMCPBridgeModule::GetCurrentEndpointUrl() const
{
	return IsBridgeRunning() ? Server->GetEndpointUrl() : FString(DefaultEndpointUrl);
}

FText FZorvekMCPBridgeModule::GetBridgeStatusLabel() const
{
	if (IsBridgeRunning())
	{
		return FText::Format(LOCTEXT("ZorvekMCPBridgeRunningTooltip", "Local MCP endpoint is running at {0}"), FText::FromString(Server->GetEndpointUrl()));
	}
	return LOCTEXT("ZorvekMCPBridgeStoppedTooltip", "Start the local MCP endpoint for Codex.");
}

FText FZorvekMCPBridgeModule::GetToggleBridgeLabel() const
{
	return IsBridgeRunning()
		? LOCTEXT("StopZorvekMCPBridge", "Stop Zorvek MCP Bridge")
		: LOCTEXT("StartZorvekMCPBridge", "Start Zorvek MCP Bridge");
}

void FZorvekMCPBridgeModule::LogBridgeStatus() const
{
	if (IsBridgeRunning())
	{
		UE_LOG(LogZorvekMCPBridge, Display, TEXT("Zorvek MCP Bridge status: running at %s"), *Server->GetEndpointUrl());
	}
	else
	{
		UE_LOG(LogZorvekMCPBridge, Display, TEXT("Zorvek MCP Bridge status: stopped"));
	}
}

bool FZorvekMCPBridgeModule::ShouldAutoStart() const
{
	// A missing key, or no configuration system, means on.
	bool bAutoStart = true;
	if (GConfig)
	{
		GConfig->GetBool(ConfigSection, AutoStartKey, bAutoStart, GEngineIni);
	}
	return bAutoStart;
}

void FZorvekMCPBridgeModule::ScheduleAutoStart()
{
	// An editor module loads in commandlets too: a cook next to an open editor must not take
	// the editor's port. A console command can still start it there on purpose.
	if (IsRunningCommandlet())
	{
		UE_LOG(LogZorvekMCPBridge, Display, TEXT("Zorvek MCP Bridge does not start automatically in a commandlet"));
		return;
	}
	if (!ShouldAutoStart())
	{
		UE_LOG(LogZorvekMCPBridge, Display, TEXT("Zorvek MCP Bridge auto-start is disabled"));
		return;
	}
	if (AutoStartTickerHandle.IsValid())
	{
		return;
	}
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Scheduling Zorvek MCP Bridge auto-start"));
	AutoStartTickerHandle = FTSTicker::GetCoreTicker().AddTicker(
		FTickerDelegate::CreateRaw(this, &FZorvekMCPBridgeModule::HandleAutoStartTick), AutoStartDelaySeconds);
}

bool FZorvekMCPBridgeModule::HandleAutoStartTick(float DeltaTime)
{
	AutoStartTickerHandle.Reset();
	if (IsBridgeRunning())
	{
		return false;
	}
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Auto-starting Zorvek MCP Bridge"));
	StartBridge();
	return false;
}

#undef LOCTEXT_NAMESPACE

IMPLEMENT_MODULE(FZorvekMCPBridgeModule, ZorvekMCPBridge)
