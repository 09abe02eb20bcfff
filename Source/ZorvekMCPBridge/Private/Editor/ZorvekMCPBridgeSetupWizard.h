#pragma once

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Input/Reply.h"
#include "Layout/Visibility.h"
#include "Setup/ZorvekMCPBridgeAISetup.h"
#include "Setup/ZorvekMCPBridgeClientCli.h"
#include "Types/SlateEnums.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class ITableRow;
class STableViewBase;
class SWindow;
template <typename ItemType>
class SListView;

DECLARE_DELEGATE_RetVal(FString, FZorvekMCPBridgeGetEndpointUrl);

// "Connect AI Assistant...": the AI clients on the left; for the chosen one its transport, setup
// snippet, install and verify commands, configuration file and documentation on the right, each
// with a copy button. Everything shown is made from the live endpoint address. The clients' own
// commands run on a worker thread, so the editor, and the bridge with it, keeps answering.
class SZorvekMCPBridgeSetupWizard : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SZorvekMCPBridgeSetupWizard) {}
		// Returns the endpoint address: the live one while the bridge runs, else the default.
		SLATE_EVENT(FZorvekMCPBridgeGetEndpointUrl, OnGetEndpointUrl)
		SLATE_EVENT(FSimpleDelegate, OnStartBridge)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	// Opens the wizard in a window of its own above the editor's main window, or brings the open
	// one to the front.
	static void OpenWindow(const FZorvekMCPBridgeGetEndpointUrl& GetEndpointUrl, const FSimpleDelegate& StartBridge);
	// Closes the open wizard: its callbacks point into the module, which is going away.
	static void CloseWindow();

private:
	typedef TSharedPtr<FZorvekMCPBridgeClientDescriptor> FClientItem;

	// The texts a user may need elsewhere, each with its own copy button.
	enum class ECopyTarget : uint8
	{
		Endpoint,
		Snippet,
		InstallCommand,
		VerifyCommand,
		ConfigPath,
	};

	TSharedRef<SWidget> MakeBridgeStateRow();
	TSharedRef<SWidget> MakeClientDetails();
	// A heading, a value in the monospace font with a copy button, and optionally an action.
	TSharedRef<SWidget> MakeCopyableRow(const TAttribute<EVisibility>& RowVisibility, const TAttribute<FText>& Heading, const TAttribute<FText>& Value,
		ECopyTarget CopyTarget, const TSharedRef<SWidget>& Action);
	TSharedRef<SWidget> MakeCopyButton(ECopyTarget CopyTarget);
	// A button that is greyed out while a client command runs.
	TSharedRef<SWidget> MakeActionButton(const FText& Label, const FText& Tooltip, const TAttribute<EVisibility>& ButtonVisibility, const FOnClicked& OnClicked);
	TSharedRef<SWidget> MakePortWarningRow();
	TSharedRef<SWidget> MakeProgressRow();
	TSharedRef<ITableRow> MakeClientRow(FClientItem Client, const TSharedRef<STableViewBase>& OwnerTable);
	void HandleClientSelected(FClientItem Client, ESelectInfo::Type SelectInfo);

	FString GetEndpointUrl() const;
	bool IsBridgeRunning() const;
	// The endpoint address while the bridge runs; empty while stopped, when its port is not known.
	FString GetRunningEndpointUrl() const;
	const FZorvekMCPBridgeClientDescriptor& GetSelectedClient() const;
	FString GetCopyText(ECopyTarget CopyTarget) const;

	FText GetBridgeStateText() const;
	EVisibility GetStartBridgeVisibility() const;
	FText GetEndpointText() const;
	FText GetClientTitleText() const;
	FText GetTransportText() const;
	FText GetSnippetText() const;
	FText GetInstallCommandText() const;
	FText GetInstallHeadingText() const;
	EVisibility GetInstallVisibility() const;
	FText GetVerifyCommandText() const;
	FText GetVerifyHeadingText() const;
	EVisibility GetVerifyVisibility() const;
	FText GetConfigPathText() const;
	EVisibility GetConfigPathVisibility() const;
	EVisibility GetWriteConfigVisibility() const;
	FText GetPortWarningText() const;
	EVisibility GetPortWarningVisibility() const;
	FText GetProgressText() const;
	EVisibility GetProgressVisibility() const;
	bool IsIdle() const;
	FText GetDocumentationText() const;
	FText GetResultText() const;
	EVisibility GetResultVisibility() const;
	FText GetResultOutputText() const;
	EVisibility GetResultOutputVisibility() const;

	FReply HandleStartBridgeClicked();
	FReply HandleCopyClicked(ECopyTarget CopyTarget);
	FReply HandleRunInstallClicked();
	FReply HandleVerifyClicked();
	FReply HandleWriteConfigClicked();
	void HandleDocumentationNavigate();

	// Runs a client command off the game thread; its result comes back through
	// FinishClientCommand while this wizard still exists.
	void StartClientCommand(const FString& CommandLine, TUniqueFunction<FZorvekMCPBridgeSetupActionResult()> Action);
	void FinishClientCommand(const FZorvekMCPBridgeSetupActionResult& Result);
	// Reads the client's configuration file again when the client or the live endpoint changed
	// since the last look, or when asked to (after a write or a command).
	void UpdatePortWarning(bool bForce) const;

	FZorvekMCPBridgeGetEndpointUrl GetEndpointUrlCallback;
	FSimpleDelegate StartBridgeCallback;
	TArray<FClientItem> Clients;
	FClientItem SelectedClient;
	TSharedPtr<SListView<FClientItem>> ClientList;
	// The outcome of the last button, shown under the client's details until another is chosen.
	FString ResultMessage;
	FString ResultOutput;
	// The command line of the client command that runs, empty when none does.
	FString RunningCommandLine;
	// The configured-port warning, for the client and live endpoint it was made for; kept so the
	// file is not read on every paint.
	mutable FString PortWarning;
	mutable FString PortWarningClientId;
	mutable FString PortWarningEndpoint;
};
