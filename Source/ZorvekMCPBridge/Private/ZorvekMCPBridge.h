#pragma once

#include "CoreMinimal.h"
#include "Containers/Ticker.h"
#include "Modules/ModuleInterface.h"

class FAutoConsoleCommand;
class FZorvekMCPBridgeServer;
class IZorvekMCPBridgeEditorPort;
class UZorvekMCPBridgeEditorSettings;

// The editor module that hosts the bridge: it owns the one server, the console commands, the
// Tools-menu section, the preferences page and the automatic start.
class FZorvekMCPBridgeModule : public IModuleInterface
{
public:
	FZorvekMCPBridgeModule();
	virtual ~FZorvekMCPBridgeModule() override;
	FZorvekMCPBridgeModule(FZorvekMCPBridgeModule&& Other);
	FZorvekMCPBridgeModule& operator=(FZorvekMCPBridgeModule&& Other);

	virtual void StartupModule() override;
	virtual void ShutdownModule() override;

	// The endpoint address shown while no server runs.
	static const TCHAR* const DefaultEndpointUrl;

private:
	friend class FZorvekMCPBridgeModuleTestAccess;

	void StartBridge();
	void StopBridge();
	void ToggleBridge();
	bool IsBridgeRunning() const;
	FString GetCurrentEndpointUrl() const;
	FText GetBridgeStatusLabel() const;
	FText GetToggleBridgeLabel() const;
	void LogBridgeStatus() const;

	bool ShouldAutoStart() const;
	void ScheduleAutoStart();
	bool HandleAutoStartTick(float DeltaTime);

	// Editor integration, implemented by the engine build in Editor/ and by the headless host
	// in Host/Bridge/.
	void RegisterMenuStartupCallback();
	void RegisterMenus();
	void UnregisterMenus();
	void RegisterEditorSettings();
	void UnregisterEditorSettings();
	void RefreshEditorSettings();
	void OpenAISetupWizard();

	TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server;
	TSharedPtr<IZorvekMCPBridgeEditorPort> EditorPort;
	FTSTicker::FDelegateHandle AutoStartTickerHandle;
	UZorvekMCPBridgeEditorSettings* SettingsObject = nullptr;
	bool bShutdownStarted = false;
	bool bSettingsRegistered = false;
	TUniquePtr<FAutoConsoleCommand> StartCommand;
	TUniquePtr<FAutoConsoleCommand> StopCommand;
	TUniquePtr<FAutoConsoleCommand> StatusCommand;
};
