#include "Editor/ZorvekMCPBridgeSetupWizard.h"

#include "Editor/ZorvekMCPBridgeEditorSettings.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/SlateDelegates.h"
#include "Framework/Views/ITypedTableView.h"
#include "HAL/PlatformApplicationMisc.h"
#include "HAL/PlatformProcess.h"
#include "Math/Vector2D.h"
#include "Setup/ZorvekMCPBridgeConfigWriter.h"
#include "Styling/AppStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SHyperlink.h"
#include "Widgets/Input/SMultiLineEditableTextBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SSeparator.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SWindow.h"
#include "Widgets/Text/STextBlock.h"
#include "Widgets/Views/SListView.h"
#include "Widgets/Views/STableRow.h"
#include "ZorvekMCPBridge.h"
#include "ZorvekMCPBridgeLog.h"

#define LOCTEXT_NAMESPACE "FZorvekMCPBridgeModule"

namespace
{
	// One wizard at a time; opening it again brings the open one forward.
	TWeakPtr<SWindow> OpenWizardWindow;

	EVisibility VisibleIf(bool bVisible)
	{
		return bVisible ? EVisibility::Visible : EVisibility::Collapsed;
	}
}

void SZorvekMCPBridgeSetupWizard::OpenWindow(const FZorvekMCPBridgeGetEndpointUrl& GetEndpointUrl, const FSimpleDelegate& StartBridge)
{
	if (const TSharedPtr<SWindow> ExistingWindow = OpenWizardWindow.Pin())
	{
		ExistingWindow->BringToFront();
		return;
	}
	if (!FSlateApplication::IsInitialized())
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("The AI setup wizard needs the editor's user interface; use Editor Preferences > Plugins > Zorvek MCP Bridge for the setup snippets."));
		return;
	}

	const TSharedRef<SWindow> Window = SNew(SWindow)
		.Title(LOCTEXT("ZorvekMCPBridgeWizardTitle", "Connect AI Assistant - Zorvek MCP Bridge"))
		.ClientSize(FVector2D(960.0, 640.0))
		.SupportsMinimize(false)
		.SupportsMaximize(true)
		[
			SNew(SZorvekMCPBridgeSetupWizard)
			.OnGetEndpointUrl(GetEndpointUrl)
			.OnStartBridge(StartBridge)
		];
	OpenWizardWindow = Window;
	FSlateApplication::Get().AddWindow(Window);
}

void SZorvekMCPBridgeSetupWizard::CloseWindow()
{
	if (const TSharedPtr<SWindow> ExistingWindow = OpenWizardWindow.Pin())
	{
		ExistingWindow->RequestDestroyWindow();
	}
	OpenWizardWindow.Reset();
}

void SZorvekMCPBridgeSetupWizard::Construct(const FArguments& InArgs)
{
	GetEndpointUrlCallback = InArgs._OnGetEndpointUrl;
	StartBridgeCallback = InArgs._OnStartBridge;
	for (const FZorvekMCPBridgeClientDescriptor& Client : ZorvekMCPBridgeAISetup::BuildClientCatalogue())
	{
		Clients.Add(MakeShared<FZorvekMCPBridgeClientDescriptor>(Client));
	}
	SelectedClient = Clients[0];

	ChildSlot
	[
		SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush(TEXT("ToolPanel.GroupBorder")))
		.Padding(FMargin(12.0f))
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot()
			.AutoHeight()
			.Padding(0.0f, 0.0f, 0.0f, 8.0f)
			[
				MakeBridgeStateRow()
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SNew(SSeparator)
			]
			+ SVerticalBox::Slot()
			.FillHeight(1.0f)
			.Padding(0.0f, 8.0f, 0.0f, 0.0f)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot()
				.FillWidth(0.28f)
				.Padding(0.0f, 0.0f, 12.0f, 0.0f)
				[
					SAssignNew(ClientList, SListView<FClientItem>)
					.ListItemsSource(&Clients)
					.SelectionMode(ESelectionMode::Single)
					.OnGenerateRow(SListView<FClientItem>::FOnGenerateRow::CreateSP(this, &SZorvekMCPBridgeSetupWizard::MakeClientRow))
					.OnSelectionChanged(SListView<FClientItem>::FOnSelectionChanged::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleClientSelected))
				]
				+ SHorizontalBox::Slot()
				.FillWidth(0.72f)
				[
					MakeClientDetails()
				]
			]
		]
	];

	ClientList->SetSelection(SelectedClient);
}

TSharedRef<SWidget> SZorvekMCPBridgeSetupWizard::MakeActionRow(const TAttribute<EVisibility>& RowVisibility, const TAttribute<FText>& Description,
	const FText& ButtonLabel, const FText& ButtonTooltip, const TAttribute<EVisibility>& ButtonVisibility, const FOnClicked& OnClicked)
{
	return SNew(SHorizontalBox)
		.Visibility(RowVisibility)
		+ SHorizontalBox::Slot()
		.FillWidth(1.0f)
		.VAlign(VAlign_Center)
		[
			SNew(STextBlock)
			.Text(Description)
			.AutoWrapText(true)
		]
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.VAlign(VAlign_Center)
		.Padding(8.0f, 0.0f, 0.0f, 0.0f)
		[
			SNew(SButton)
			.Text(ButtonLabel)
			.ToolTipText(ButtonTooltip)
			.Visibility(ButtonVisibility)
			.OnClicked(OnClicked)
		];
}

TSharedRef<SWidget> SZorvekMCPBridgeSetupWizard::MakeBridgeStateRow()
{
	return MakeActionRow(EVisibility::Visible,
		MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetBridgeStateText),
		LOCTEXT("ZorvekMCPBridgeWizardStartBridge", "Start bridge"),
		LOCTEXT("ZorvekMCPBridgeWizardStartBridgeTooltip", "Start the local MCP endpoint so AI clients can connect."),
		MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetStartBridgeVisibility),
		FOnClicked::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleStartBridgeClicked));
}

TSharedRef<SWidget> SZorvekMCPBridgeSetupWizard::MakeClientDetails()
{
	return SNew(SVerticalBox)
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(STextBlock)
			.Text(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetClientTitleText))
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 4.0f, 0.0f, 0.0f)
		[
			SNew(STextBlock)
			.Text(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetTransportText))
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 12.0f, 0.0f, 4.0f)
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot()
			.FillWidth(1.0f)
			.VAlign(VAlign_Center)
			[
				SNew(STextBlock)
				.Text(LOCTEXT("ZorvekMCPBridgeWizardSnippetHeading", "Setup snippet"))
			]
			+ SHorizontalBox::Slot()
			.AutoWidth()
			[
				SNew(SButton)
				.Text(LOCTEXT("ZorvekMCPBridgeWizardCopySnippet", "Copy"))
				.ToolTipText(LOCTEXT("ZorvekMCPBridgeWizardCopySnippetTooltip", "Copy the snippet to the clipboard."))
				.OnClicked(FOnClicked::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleCopySnippetClicked))
			]
		]
		+ SVerticalBox::Slot()
		.FillHeight(1.0f)
		[
			SNew(SMultiLineEditableTextBox)
			.Text(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetSnippetText))
			.IsReadOnly(true)
			.AutoWrapText(false)
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 8.0f, 0.0f, 0.0f)
		[
			MakeActionRow(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetInstallVisibility),
				MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetInstallCommandText),
				LOCTEXT("ZorvekMCPBridgeWizardRunInstall", "Run install command"),
				LOCTEXT("ZorvekMCPBridgeWizardRunInstallTooltip", "Run the client's own command-line tool to add this bridge. The editor waits until it finishes."),
				EVisibility::Visible,
				FOnClicked::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleRunInstallClicked))
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 4.0f, 0.0f, 0.0f)
		[
			MakeActionRow(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetVerifyVisibility),
				MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetVerifyCommandText),
				LOCTEXT("ZorvekMCPBridgeWizardVerify", "Verify"),
				LOCTEXT("ZorvekMCPBridgeWizardVerifyTooltip", "Ask the client which MCP servers it knows and check that this bridge is among them."),
				EVisibility::Visible,
				FOnClicked::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleVerifyClicked))
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 4.0f, 0.0f, 0.0f)
		[
			MakeActionRow(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetConfigPathVisibility),
				MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetConfigPathText),
				LOCTEXT("ZorvekMCPBridgeWizardWriteConfig", "Write config"),
				LOCTEXT("ZorvekMCPBridgeWizardWriteConfigTooltip", "Add this bridge to the client's configuration file. The previous file is kept as a timestamped backup next to it."),
				MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetWriteConfigVisibility),
				FOnClicked::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleWriteConfigClicked))
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 8.0f, 0.0f, 0.0f)
		[
			SNew(STextBlock)
			.Text(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetResultText))
			.Visibility(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetResultVisibility))
			.AutoWrapText(true)
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.MaxHeight(140.0f)
		.Padding(0.0f, 4.0f, 0.0f, 0.0f)
		[
			SNew(SMultiLineEditableTextBox)
			.Text(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetResultOutputText))
			.Visibility(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetResultOutputVisibility))
			.IsReadOnly(true)
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 8.0f, 0.0f, 0.0f)
		[
			SNew(SHyperlink)
			.Text(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetDocumentationText))
			.OnNavigate(FSimpleDelegate::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleDocumentationNavigate))
		];
}

TSharedRef<ITableRow> SZorvekMCPBridgeSetupWizard::MakeClientRow(FClientItem Client, const TSharedRef<STableViewBase>& OwnerTable)
{
	return SNew(STableRow<FClientItem>, OwnerTable)
		.Padding(FMargin(6.0f, 4.0f))
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SNew(STextBlock)
				.Text(FText::FromString(Client->DisplayName))
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SNew(STextBlock)
				.Text(FText::FromString(Client->TransportLabel))
			]
		];
}

void SZorvekMCPBridgeSetupWizard::HandleClientSelected(FClientItem Client, ESelectInfo::Type SelectInfo)
{
	// A click into empty space clears the list's selection; the details keep the last client.
	if (Client.IsValid() && Client != SelectedClient)
	{
		SelectedClient = Client;
		ResultMessage.Reset();
		ResultOutput.Reset();
	}
}

FString SZorvekMCPBridgeSetupWizard::GetEndpointUrl() const
{
	return GetEndpointUrlCallback.IsBound() ? GetEndpointUrlCallback.Execute() : FString(FZorvekMCPBridgeModule::DefaultEndpointUrl);
}

bool SZorvekMCPBridgeSetupWizard::IsBridgeRunning() const
{
	// The module refreshes its preferences page after every start and stop.
	const UZorvekMCPBridgeEditorSettings* Settings = UZorvekMCPBridgeEditorSettings::GetShownSettings();
	return Settings && Settings->IsBridgeShownRunning();
}

const FZorvekMCPBridgeClientDescriptor& SZorvekMCPBridgeSetupWizard::GetSelectedClient() const
{
	return *SelectedClient;
}

FText SZorvekMCPBridgeSetupWizard::GetBridgeStateText() const
{
	const FText Endpoint = FText::FromString(GetEndpointUrl());
	return IsBridgeRunning()
		? FText::Format(LOCTEXT("ZorvekMCPBridgeWizardRunning", "Zorvek MCP Bridge is running at {0}. Pick your AI client and connect it with one of the ways below."), Endpoint)
		: FText::Format(LOCTEXT("ZorvekMCPBridgeWizardStopped", "Zorvek MCP Bridge is not running. Start it so your AI client can reach {0}."), Endpoint);
}

EVisibility SZorvekMCPBridgeSetupWizard::GetStartBridgeVisibility() const
{
	return VisibleIf(!IsBridgeRunning());
}

FText SZorvekMCPBridgeSetupWizard::GetClientTitleText() const
{
	return FText::FromString(GetSelectedClient().DisplayName);
}

FText SZorvekMCPBridgeSetupWizard::GetTransportText() const
{
	return FText::Format(LOCTEXT("ZorvekMCPBridgeWizardTransport", "Transport: {0}. Server name: {1}."),
		FText::FromString(GetSelectedClient().TransportLabel), FText::FromString(ZorvekMCPBridgeAISetup::ServerName));
}

FText SZorvekMCPBridgeSetupWizard::GetSnippetText() const
{
	return FText::FromString(ZorvekMCPBridgeAISetup::BuildSetupSnippet(GetSelectedClient().Id, GetEndpointUrl()));
}

FText SZorvekMCPBridgeSetupWizard::GetInstallCommandText() const
{
	return FText::Format(LOCTEXT("ZorvekMCPBridgeWizardInstallCommand", "Install command: {0}"),
		FText::FromString(ZorvekMCPBridgeAISetup::BuildInstallCommandLine(GetSelectedClient(), GetEndpointUrl())));
}

EVisibility SZorvekMCPBridgeSetupWizard::GetInstallVisibility() const
{
	return VisibleIf(GetSelectedClient().HasInstallCommand());
}

FText SZorvekMCPBridgeSetupWizard::GetVerifyCommandText() const
{
	return FText::Format(LOCTEXT("ZorvekMCPBridgeWizardVerifyCommand", "Check with: {0}"),
		FText::FromString(ZorvekMCPBridgeAISetup::BuildVerifyCommandLine(GetSelectedClient())));
}

EVisibility SZorvekMCPBridgeSetupWizard::GetVerifyVisibility() const
{
	return VisibleIf(GetSelectedClient().HasVerifyCommand());
}

FText SZorvekMCPBridgeSetupWizard::GetConfigPathText() const
{
	return FText::Format(LOCTEXT("ZorvekMCPBridgeWizardConfigPath", "Configuration file: {0}"), FText::FromString(GetSelectedClient().ConfigPath));
}

EVisibility SZorvekMCPBridgeSetupWizard::GetConfigPathVisibility() const
{
	return VisibleIf(!GetSelectedClient().ConfigPath.IsEmpty());
}

EVisibility SZorvekMCPBridgeSetupWizard::GetWriteConfigVisibility() const
{
	return VisibleIf(GetSelectedClient().bConfigWriteEnabled);
}

FText SZorvekMCPBridgeSetupWizard::GetDocumentationText() const
{
	return FText::Format(LOCTEXT("ZorvekMCPBridgeWizardDocumentation", "{0} MCP documentation: {1}"),
		FText::FromString(GetSelectedClient().DisplayName), FText::FromString(GetSelectedClient().DocumentationUrl));
}

FText SZorvekMCPBridgeSetupWizard::GetResultText() const
{
	return FText::FromString(ResultMessage);
}

EVisibility SZorvekMCPBridgeSetupWizard::GetResultVisibility() const
{
	return VisibleIf(!ResultMessage.IsEmpty());
}

FText SZorvekMCPBridgeSetupWizard::GetResultOutputText() const
{
	return FText::FromString(ResultOutput);
}

EVisibility SZorvekMCPBridgeSetupWizard::GetResultOutputVisibility() const
{
	return VisibleIf(!ResultOutput.IsEmpty());
}

FReply SZorvekMCPBridgeSetupWizard::HandleStartBridgeClicked()
{
	StartBridgeCallback.ExecuteIfBound();
	ResultOutput.Reset();
	ResultMessage = IsBridgeRunning()
		? FString()
		: LOCTEXT("ZorvekMCPBridgeWizardStartFailed", "The bridge could not start. The Output Log (LogZorvekMCPBridge) says why.").ToString();
	return FReply::Handled();
}

FReply SZorvekMCPBridgeSetupWizard::HandleCopySnippetClicked()
{
	const FZorvekMCPBridgeClientDescriptor& Client = GetSelectedClient();
	FPlatformApplicationMisc::ClipboardCopy(*ZorvekMCPBridgeAISetup::BuildSetupSnippet(Client.Id, GetEndpointUrl()));
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Copied Zorvek MCP Bridge setup text to clipboard"));
	ResultOutput.Reset();
	ResultMessage = FText::Format(LOCTEXT("ZorvekMCPBridgeWizardCopied", "Copied the {0} snippet to the clipboard. Add it to the MCP configuration of {0}, then restart {0} so it reloads MCP servers."),
		FText::FromString(Client.DisplayName)).ToString();
	return FReply::Handled();
}

FReply SZorvekMCPBridgeSetupWizard::HandleRunInstallClicked()
{
	FZorvekMCPBridgePlatformProcessRunner Runner;
	ShowActionResult(ZorvekMCPBridgeAISetup::InstallWithClientCli(GetSelectedClient(), GetEndpointUrl(), Runner));
	return FReply::Handled();
}

FReply SZorvekMCPBridgeSetupWizard::HandleVerifyClicked()
{
	FZorvekMCPBridgePlatformProcessRunner Runner;
	ShowActionResult(ZorvekMCPBridgeAISetup::VerifyWithClientCli(GetSelectedClient(), Runner));
	return FReply::Handled();
}

FReply SZorvekMCPBridgeSetupWizard::HandleWriteConfigClicked()
{
	FString Message;
	ZorvekMCPBridgeAISetup::WriteClientConfig(GetSelectedClient(), GetEndpointUrl(), Message);
	ResultMessage = Message;
	ResultOutput.Reset();
	return FReply::Handled();
}

void SZorvekMCPBridgeSetupWizard::HandleDocumentationNavigate()
{
	FString Error;
	FPlatformProcess::LaunchURL(*GetSelectedClient().DocumentationUrl, nullptr, &Error);
	if (!Error.IsEmpty())
	{
		ResultMessage = FText::Format(LOCTEXT("ZorvekMCPBridgeWizardLinkFailed", "Could not open {0}: {1}"),
			FText::FromString(GetSelectedClient().DocumentationUrl), FText::FromString(Error)).ToString();
		ResultOutput.Reset();
	}
}

void SZorvekMCPBridgeSetupWizard::ShowActionResult(const FZorvekMCPBridgeSetupActionResult& Result)
{
	ResultMessage = Result.Message;
	ResultOutput = Result.Output;
	if (!Result.bSucceeded)
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("%s"), *Result.Message);
	}
}

#undef LOCTEXT_NAMESPACE
