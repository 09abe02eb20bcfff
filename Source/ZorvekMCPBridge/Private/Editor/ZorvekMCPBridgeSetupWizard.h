#pragma once

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Input/Reply.h"
#include "Layout/Visibility.h"
#include "Setup/ZorvekMCPBridgeAISetup.h"
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
// snippet, install and verify commands, configuration file and documentation on the right.
// Everything shown is made from the live endpoint address.
class SZorvekMCPBridgeSetupWizard : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SZorvekMCPBridgeSetupWizard) {}
		// Returns the endpoint address: the live one while the bridge runs, else the default.
		SLATE_EVENT(FZorvekMCPBridgeGetEndpointUrl, OnGetEndpointUrl)
		SLATE_EVENT(FSimpleDelegate, OnStartBridge)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	// Opens the wizard in its own window, or brings the open one to the front.
	static void OpenWindow(const FZorvekMCPBridgeGetEndpointUrl& GetEndpointUrl, const FSimpleDelegate& StartBridge);
	// Closes the open wizard: its callbacks point into the module, which is going away.
	static void CloseWindow();

private:
	typedef TSharedPtr<FZorvekMCPBridgeClientDescriptor> FClientItem;

	// A line of text with a button at its end, as the wizard's state and command rows are.
	TSharedRef<SWidget> MakeActionRow(const TAttribute<EVisibility>& RowVisibility, const TAttribute<FText>& Description,
		const FText& ButtonLabel, const FText& ButtonTooltip, const TAttribute<EVisibility>& ButtonVisibility, const FOnClicked& OnClicked);
	TSharedRef<SWidget> MakeBridgeStateRow();
	TSharedRef<SWidget> MakeClientDetails();
	TSharedRef<ITableRow> MakeClientRow(FClientItem Client, const TSharedRef<STableViewBase>& OwnerTable);
	void HandleClientSelected(FClientItem Client, ESelectInfo::Type SelectInfo);

	FString GetEndpointUrl() const;
	bool IsBridgeRunning() const;
	const FZorvekMCPBridgeClientDescriptor& GetSelectedClient() const;

	FText GetBridgeStateText() const;
	EVisibility GetStartBridgeVisibility() const;
	FText GetClientTitleText() const;
	FText GetTransportText() const;
	FText GetSnippetText() const;
	FText GetInstallCommandText() const;
	EVisibility GetInstallVisibility() const;
	FText GetVerifyCommandText() const;
	EVisibility GetVerifyVisibility() const;
	FText GetConfigPathText() const;
	EVisibility GetConfigPathVisibility() const;
	EVisibility GetWriteConfigVisibility() const;
	FText GetDocumentationText() const;
	FText GetResultText() const;
	EVisibility GetResultVisibility() const;
	FText GetResultOutputText() const;
	EVisibility GetResultOutputVisibility() const;

	FReply HandleStartBridgeClicked();
	FReply HandleCopySnippetClicked();
	FReply HandleRunInstallClicked();
	FReply HandleVerifyClicked();
	FReply HandleWriteConfigClicked();
	void HandleDocumentationNavigate();
	void ShowActionResult(const FZorvekMCPBridgeSetupActionResult& Result);

	FZorvekMCPBridgeGetEndpointUrl GetEndpointUrlCallback;
	FSimpleDelegate StartBridgeCallback;
	TArray<FClientItem> Clients;
	FClientItem SelectedClient;
	TSharedPtr<SListView<FClientItem>> ClientList;
	// The outcome of the last button, shown under the client's details until another is chosen.
	FString ResultMessage;
	FString ResultOutput;
};
