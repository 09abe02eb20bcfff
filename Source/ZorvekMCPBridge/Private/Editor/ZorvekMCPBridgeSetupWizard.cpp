#include "Editor/ZorvekMCPBridgeSetupWizard.h"

#include "Editor/ZorvekMCPBridgeEditorSettings.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/TabManager.h"
#include "Framework/SlateDelegates.h"
#include "Framework/Views/ITypedTableView.h"
#include "HAL/PlatformApplicationMisc.h"
#include "HAL/PlatformProcess.h"
#include "Math/Vector2D.h"
#include "Setup/ZorvekMCPBridgeConfigWriter.h"
#include "Setup/ZorvekMCPBridgeConfiguredEndpoint.h"
#include "Styling/AppStyle.h"
#include "Styling/CoreStyle.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Images/SThrobber.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SHyperlink.h"
#include "Widgets/Input/SMultiLineEditableTextBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SSeparator.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SNullWidget.h"
#include "Widgets/SWindow.h"
#include "Widgets/Text/STextBlock.h"
#include "Widgets/Views/SListView.h"
#include "Widgets/Views/STableRow.h"
#include "ZorvekMCPBridge.h"
#include "ZorvekMCPBridgeLog.h"

// Not in the reference notes; check against the engine: SThrobber (Slate), SImage and SNullWidget
// (SlateCore), and the Font argument of STextBlock and SMultiLineEditableTextBox.

#define LOCTEXT_NAMESPACE "FZorvekMCPBridgeModule"

namespace
{
	// One wizard at a time; opening it again brings the open one forward.
	TWeakPtr<SWindow> OpenWizardWindow;

	// Snippets, commands and paths are typed or pasted elsewhere, so they are shown as they are.
	const float MonospaceFontSize = 9.0f;

	EVisibility VisibleIf(bool bVisible)
	{
		return bVisible ? EVisibility::Visible : EVisibility::Collapsed;
	}

	FSlateFontInfo MonospaceFont()
	{
		// Not in the reference notes; check against the engine: FCoreStyle::GetDefaultFontStyle
		// (SlateCore, "Styling/CoreStyle.h") with the "Mono" typeface, as the Output Log uses.
		return FCoreStyle::GetDefaultFontStyle(TEXT("Mono"), MonospaceFontSize);
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
		.ClientSize(FVector2D(980.0, 680.0))
		.SupportsMinimize(false)
		.SupportsMaximize(true)
		[
			SNew(SZorvekMCPBridgeSetupWizard)
			.OnGetEndpointUrl(GetEndpointUrl)
			.OnStartBridge(StartBridge)
		];
	OpenWizardWindow = Window;

	// A child of the editor's main window stays above it and does not vanish behind it when the
	// user clicks back into the editor to check something.
	// Not in the reference notes; check against the engine: FGlobalTabmanager::GetRootWindow
	// (Slate, "Framework/Docking/TabManager.h") and FSlateApplication::AddWindowAsNativeChild.
	const TSharedPtr<SWindow> MainWindow = FGlobalTabmanager::Get()->GetRootWindow();
	if (MainWindow.IsValid())
	{
		FSlateApplication::Get().AddWindowAsNativeChild(Window, MainWindow.ToSharedRef());
	}
	else
	{
		FSlateApplication::Get().AddWindow(Window);
	}
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
				.FillWidth(0.26f)
				.Padding(0.0f, 0.0f, 12.0f, 0.0f)
				[
					SAssignNew(ClientList, SListView<FClientItem>)
					.ListItemsSource(&Clients)
					.SelectionMode(ESelectionMode::Single)
					.OnGenerateRow(SListView<FClientItem>::FOnGenerateRow::CreateSP(this, &SZorvekMCPBridgeSetupWizard::MakeClientRow))
					.OnSelectionChanged(SListView<FClientItem>::FOnSelectionChanged::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleClientSelected))
				]
				+ SHorizontalBox::Slot()
				.FillWidth(0.74f)
				[
					MakeClientDetails()
				]
			]
		]
	];

	ClientList->SetSelection(SelectedClient);
}

TSharedRef<SWidget> SZorvekMCPBridgeSetupWizard::MakeCopyButton(ECopyTarget CopyTarget)
{
	return SNew(SButton)
		.Text(LOCTEXT("ZorvekMCPBridgeWizardCopy", "Copy"))
		.ToolTipText(LOCTEXT("ZorvekMCPBridgeWizardCopyTooltip", "Copy this text to the clipboard."))
		.OnClicked(FOnClicked::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleCopyClicked, CopyTarget));
}

TSharedRef<SWidget> SZorvekMCPBridgeSetupWizard::MakeActionButton(const FText& Label, const FText& Tooltip, const TAttribute<EVisibility>& ButtonVisibility,
	const FOnClicked& OnClicked)
{
	return SNew(SButton)
		.Text(Label)
		.ToolTipText(Tooltip)
		.Visibility(ButtonVisibility)
		.IsEnabled(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::IsIdle))
		.OnClicked(OnClicked);
}

TSharedRef<SWidget> SZorvekMCPBridgeSetupWizard::MakeCopyableRow(const TAttribute<EVisibility>& RowVisibility, const TAttribute<FText>& Heading,
	const TAttribute<FText>& Value, ECopyTarget CopyTarget, const TSharedRef<SWidget>& Action)
{
	return SNew(SVerticalBox)
		.Visibility(RowVisibility)
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(STextBlock)
			.Text(Heading)
			.AutoWrapText(true)
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 2.0f, 0.0f, 0.0f)
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot()
			.FillWidth(1.0f)
			.VAlign(VAlign_Center)
			[
				SNew(STextBlock)
				.Text(Value)
				.Font(MonospaceFont())
				.AutoWrapText(true)
			]
			+ SHorizontalBox::Slot()
			.AutoWidth()
			.VAlign(VAlign_Center)
			.Padding(8.0f, 0.0f, 0.0f, 0.0f)
			[
				MakeCopyButton(CopyTarget)
			]
			+ SHorizontalBox::Slot()
			.AutoWidth()
			.VAlign(VAlign_Center)
			.Padding(4.0f, 0.0f, 0.0f, 0.0f)
			[
				Action
			]
		];
}

TSharedRef<SWidget> SZorvekMCPBridgeSetupWizard::MakeBridgeStateRow()
{
	return SNew(SVerticalBox)
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot()
			.FillWidth(1.0f)
			.VAlign(VAlign_Center)
			[
				SNew(STextBlock)
				.Text(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetBridgeStateText))
				.AutoWrapText(true)
			]
			+ SHorizontalBox::Slot()
			.AutoWidth()
			.VAlign(VAlign_Center)
			.Padding(8.0f, 0.0f, 0.0f, 0.0f)
			[
				SNew(SButton)
				.Text(LOCTEXT("ZorvekMCPBridgeWizardStartBridge", "Start bridge"))
				.ToolTipText(LOCTEXT("ZorvekMCPBridgeWizardStartBridgeTooltip", "Start the local MCP endpoint so AI clients can connect."))
				.Visibility(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetStartBridgeVisibility))
				.OnClicked(FOnClicked::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleStartBridgeClicked))
			]
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 6.0f, 0.0f, 0.0f)
		[
			MakeCopyableRow(EVisibility::Visible,
				LOCTEXT("ZorvekMCPBridgeWizardEndpointHeading", "Endpoint address"),
				MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetEndpointText),
				ECopyTarget::Endpoint,
				SNullWidget::NullWidget)
		];
}

TSharedRef<SWidget> SZorvekMCPBridgeSetupWizard::MakePortWarningRow()
{
	return SNew(SHorizontalBox)
		.Visibility(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetPortWarningVisibility))
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.VAlign(VAlign_Top)
		.Padding(0.0f, 0.0f, 6.0f, 0.0f)
		[
			SNew(SImage)
			.Image(FAppStyle::GetBrush(TEXT("Icons.WarningWithColor")))
		]
		+ SHorizontalBox::Slot()
		.FillWidth(1.0f)
		[
			SNew(STextBlock)
			.Text(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetPortWarningText))
			.AutoWrapText(true)
		];
}

TSharedRef<SWidget> SZorvekMCPBridgeSetupWizard::MakeProgressRow()
{
	return SNew(SHorizontalBox)
		.Visibility(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetProgressVisibility))
		+ SHorizontalBox::Slot()
		.AutoWidth()
		.VAlign(VAlign_Center)
		.Padding(0.0f, 0.0f, 8.0f, 0.0f)
		[
			SNew(SThrobber)
		]
		+ SHorizontalBox::Slot()
		.FillWidth(1.0f)
		.VAlign(VAlign_Center)
		[
			SNew(STextBlock)
			.Text(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetProgressText))
			.AutoWrapText(true)
		];
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
		.Padding(0.0f, 8.0f, 0.0f, 0.0f)
		[
			MakePortWarningRow()
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
				MakeCopyButton(ECopyTarget::Snippet)
			]
		]
		+ SVerticalBox::Slot()
		.FillHeight(1.0f)
		[
			SNew(SMultiLineEditableTextBox)
			.Text(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetSnippetText))
			.Font(MonospaceFont())
			.IsReadOnly(true)
			.AutoWrapText(false)
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 10.0f, 0.0f, 0.0f)
		[
			MakeCopyableRow(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetInstallVisibility),
				MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetInstallHeadingText),
				MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetInstallCommandText),
				ECopyTarget::InstallCommand,
				MakeActionButton(LOCTEXT("ZorvekMCPBridgeWizardRunInstall", "Run"),
					LOCTEXT("ZorvekMCPBridgeWizardRunInstallTooltip", "Run the client's own command-line tool in the project folder to add this bridge. The editor keeps working while it runs; it is stopped after a minute."),
					EVisibility::Visible,
					FOnClicked::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleRunInstallClicked)))
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 8.0f, 0.0f, 0.0f)
		[
			MakeCopyableRow(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetVerifyVisibility),
				MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetVerifyHeadingText),
				MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetVerifyCommandText),
				ECopyTarget::VerifyCommand,
				MakeActionButton(LOCTEXT("ZorvekMCPBridgeWizardVerify", "Verify"),
					LOCTEXT("ZorvekMCPBridgeWizardVerifyTooltip", "Ask the client which MCP servers it knows and check that this bridge is among them, at the port it runs on."),
					EVisibility::Visible,
					FOnClicked::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleVerifyClicked)))
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 8.0f, 0.0f, 0.0f)
		[
			MakeCopyableRow(MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetConfigPathVisibility),
				LOCTEXT("ZorvekMCPBridgeWizardConfigHeading", "Configuration file"),
				MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetConfigPathText),
				ECopyTarget::ConfigPath,
				MakeActionButton(LOCTEXT("ZorvekMCPBridgeWizardWriteConfig", "Write config"),
					LOCTEXT("ZorvekMCPBridgeWizardWriteConfigTooltip", "Add this bridge to the client's configuration file. The previous file is kept as a timestamped backup next to it."),
					MakeAttributeRaw(this, &SZorvekMCPBridgeSetupWizard::GetWriteConfigVisibility),
					FOnClicked::CreateSP(this, &SZorvekMCPBridgeSetupWizard::HandleWriteConfigClicked)))
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, 10.0f, 0.0f, 0.0f)
		[
			MakeProgressRow()
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
			.Font(MonospaceFont())
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
	// A click into empty space clears the list's selection; the details keep the last client. A
	// command that still runs reports under whichever client is shown; its message names it.
	if (Client.IsValid() && Client != SelectedClient)
	{
		SelectedClient = Client;
		if (IsIdle())
		{
			ResultMessage.Reset();
			ResultOutput.Reset();
		}
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

FString SZorvekMCPBridgeSetupWizard::GetRunningEndpointUrl() const
{
	return IsBridgeRunning() ? GetEndpointUrl() : FString();
}

const FZorvekMCPBridgeClientDescriptor& SZorvekMCPBridgeSetupWizard::GetSelectedClient() const
{
	return *SelectedClient;
}

FString SZorvekMCPBridgeSetupWizard::GetCopyText(ECopyTarget CopyTarget) const
{
	const FZorvekMCPBridgeClientDescriptor& Client = GetSelectedClient();
	switch (CopyTarget)
	{
	case ECopyTarget::Endpoint:
		return GetEndpointUrl();
	case ECopyTarget::Snippet:
		return ZorvekMCPBridgeAISetup::BuildSetupSnippet(Client.Id, GetEndpointUrl());
	case ECopyTarget::InstallCommand:
		return ZorvekMCPBridgeAISetup::BuildInstallCommandLine(Client, GetEndpointUrl());
	case ECopyTarget::VerifyCommand:
		return ZorvekMCPBridgeAISetup::BuildVerifyCommandLine(Client);
	case ECopyTarget::ConfigPath:
		return Client.ConfigPath;
	}
	return FString();
}

FText SZorvekMCPBridgeSetupWizard::GetBridgeStateText() const
{
	return IsBridgeRunning()
		? LOCTEXT("ZorvekMCPBridgeWizardRunning", "Zorvek MCP Bridge is running. Pick your AI client and connect it with one of the ways below.")
		: LOCTEXT("ZorvekMCPBridgeWizardStopped", "Zorvek MCP Bridge is not running. Start it so your AI client can reach it; it takes the first free port from 8765, so the address below may change.");
}

EVisibility SZorvekMCPBridgeSetupWizard::GetStartBridgeVisibility() const
{
	return VisibleIf(!IsBridgeRunning());
}

FText SZorvekMCPBridgeSetupWizard::GetEndpointText() const
{
	return FText::FromString(GetEndpointUrl());
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
	return FText::FromString(GetCopyText(ECopyTarget::Snippet));
}

FText SZorvekMCPBridgeSetupWizard::GetInstallCommandText() const
{
	return FText::FromString(GetCopyText(ECopyTarget::InstallCommand));
}

FText SZorvekMCPBridgeSetupWizard::GetInstallHeadingText() const
{
	return FText::Format(LOCTEXT("ZorvekMCPBridgeWizardInstallHeading", "Install command (runs in {0})"),
		FText::FromString(ZorvekMCPBridgeAISetup::GetClientCommandWorkingDirectory()));
}

EVisibility SZorvekMCPBridgeSetupWizard::GetInstallVisibility() const
{
	return VisibleIf(GetSelectedClient().HasInstallCommand());
}

FText SZorvekMCPBridgeSetupWizard::GetVerifyCommandText() const
{
	return FText::FromString(GetCopyText(ECopyTarget::VerifyCommand));
}

FText SZorvekMCPBridgeSetupWizard::GetVerifyHeadingText() const
{
	return FText::Format(LOCTEXT("ZorvekMCPBridgeWizardVerifyHeading", "Check with (runs in {0})"),
		FText::FromString(ZorvekMCPBridgeAISetup::GetClientCommandWorkingDirectory()));
}

EVisibility SZorvekMCPBridgeSetupWizard::GetVerifyVisibility() const
{
	return VisibleIf(GetSelectedClient().HasVerifyCommand());
}

FText SZorvekMCPBridgeSetupWizard::GetConfigPathText() const
{
	return FText::FromString(GetCopyText(ECopyTarget::ConfigPath));
}

EVisibility SZorvekMCPBridgeSetupWizard::GetConfigPathVisibility() const
{
	return VisibleIf(!GetSelectedClient().ConfigPath.IsEmpty());
}

EVisibility SZorvekMCPBridgeSetupWizard::GetWriteConfigVisibility() const
{
	return VisibleIf(GetSelectedClient().bConfigWriteEnabled);
}

void SZorvekMCPBridgeSetupWizard::UpdatePortWarning(bool bForce) const
{
	const FString RunningEndpoint = GetRunningEndpointUrl();
	const FString& ClientId = GetSelectedClient().Id;
	if (!bForce && PortWarningClientId.Equals(ClientId, ESearchCase::CaseSensitive) && PortWarningEndpoint.Equals(RunningEndpoint, ESearchCase::CaseSensitive))
	{
		return;
	}
	PortWarningClientId = ClientId;
	PortWarningEndpoint = RunningEndpoint;
	PortWarning = ZorvekMCPBridgeAISetup::DescribeConfiguredPortMismatch(GetSelectedClient(), RunningEndpoint);
}

FText SZorvekMCPBridgeSetupWizard::GetPortWarningText() const
{
	UpdatePortWarning(false);
	return FText::FromString(PortWarning);
}

EVisibility SZorvekMCPBridgeSetupWizard::GetPortWarningVisibility() const
{
	UpdatePortWarning(false);
	return VisibleIf(!PortWarning.IsEmpty());
}

FText SZorvekMCPBridgeSetupWizard::GetProgressText() const
{
	return FText::Format(LOCTEXT("ZorvekMCPBridgeWizardRunningCommand", "Running {0} ... The editor keeps working; the command is stopped after {1} seconds."),
		FText::FromString(RunningCommandLine), FText::AsNumber((int32)ZorvekMCPBridgeAISetup::DefaultClientCommandTimeoutSeconds));
}

EVisibility SZorvekMCPBridgeSetupWizard::GetProgressVisibility() const
{
	return VisibleIf(!IsIdle());
}

bool SZorvekMCPBridgeSetupWizard::IsIdle() const
{
	return RunningCommandLine.IsEmpty();
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
	if (IsIdle())
	{
		ResultOutput.Reset();
		ResultMessage = IsBridgeRunning()
			? FString()
			: LOCTEXT("ZorvekMCPBridgeWizardStartFailed", "The bridge could not start. The Output Log (LogZorvekMCPBridge) says why.").ToString();
	}
	return FReply::Handled();
}

FReply SZorvekMCPBridgeSetupWizard::HandleCopyClicked(ECopyTarget CopyTarget)
{
	FPlatformApplicationMisc::ClipboardCopy(*GetCopyText(CopyTarget));
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Copied Zorvek MCP Bridge setup text to clipboard"));
	if (!IsIdle())
	{
		// The running command's line stays on screen; the copy needs no word.
		return FReply::Handled();
	}
	ResultOutput.Reset();
	const FText ClientName = FText::FromString(GetSelectedClient().DisplayName);
	switch (CopyTarget)
	{
	case ECopyTarget::Endpoint:
		ResultMessage = LOCTEXT("ZorvekMCPBridgeWizardCopiedEndpoint", "Copied the endpoint address to the clipboard.").ToString();
		break;
	case ECopyTarget::Snippet:
		ResultMessage = FText::Format(LOCTEXT("ZorvekMCPBridgeWizardCopied", "Copied the {0} snippet to the clipboard. Add it to the MCP configuration of {0}, then restart {0} so it reloads MCP servers."),
			ClientName).ToString();
		break;
	case ECopyTarget::InstallCommand:
	case ECopyTarget::VerifyCommand:
		ResultMessage = FText::Format(LOCTEXT("ZorvekMCPBridgeWizardCopiedCommand", "Copied the command to the clipboard. Run it in a terminal in {0}."),
			FText::FromString(ZorvekMCPBridgeAISetup::GetClientCommandWorkingDirectory())).ToString();
		break;
	case ECopyTarget::ConfigPath:
		ResultMessage = LOCTEXT("ZorvekMCPBridgeWizardCopiedPath", "Copied the configuration file's path to the clipboard.").ToString();
		break;
	}
	return FReply::Handled();
}

FReply SZorvekMCPBridgeSetupWizard::HandleRunInstallClicked()
{
	const FZorvekMCPBridgeClientDescriptor Client = GetSelectedClient();
	const FString EndpointUrl = GetEndpointUrl();
	StartClientCommand(ZorvekMCPBridgeAISetup::BuildInstallCommandLine(Client, EndpointUrl),
		[Client, EndpointUrl, Options = ZorvekMCPBridgeAISetup::MakeClientCommandOptions()]()
		{
			FZorvekMCPBridgePlatformProcessRunner Runner;
			return ZorvekMCPBridgeAISetup::InstallWithClientCli(Client, EndpointUrl, Options, Runner);
		});
	return FReply::Handled();
}

FReply SZorvekMCPBridgeSetupWizard::HandleVerifyClicked()
{
	// In the project folder too: a client that registers servers per project lists only the
	// registrations of the folder it runs in.
	const FZorvekMCPBridgeClientDescriptor Client = GetSelectedClient();
	StartClientCommand(ZorvekMCPBridgeAISetup::BuildVerifyCommandLine(Client),
		[Client, RunningEndpointUrl = GetRunningEndpointUrl(), Options = ZorvekMCPBridgeAISetup::MakeClientCommandOptions()]()
		{
			FZorvekMCPBridgePlatformProcessRunner Runner;
			return ZorvekMCPBridgeAISetup::VerifyWithClientCli(Client, RunningEndpointUrl, Options, Runner);
		});
	return FReply::Handled();
}

FReply SZorvekMCPBridgeSetupWizard::HandleWriteConfigClicked()
{
	if (!IsIdle())
	{
		return FReply::Handled();
	}
	FString Message;
	ZorvekMCPBridgeAISetup::WriteClientConfig(GetSelectedClient(), GetEndpointUrl(), Message);
	ResultMessage = Message;
	ResultOutput.Reset();
	UpdatePortWarning(true);
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

void SZorvekMCPBridgeSetupWizard::StartClientCommand(const FString& CommandLine, TUniqueFunction<FZorvekMCPBridgeSetupActionResult()> Action)
{
	// The buttons are greyed out meanwhile; this guards a click that raced the greying.
	if (!IsIdle())
	{
		return;
	}
	RunningCommandLine = CommandLine;
	ResultMessage.Reset();
	ResultOutput.Reset();
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Running %s in %s"), *CommandLine, *ZorvekMCPBridgeAISetup::GetClientCommandWorkingDirectory());

	// The wizard may be closed before the command ends; then the result is only logged.
	const TWeakPtr<SZorvekMCPBridgeSetupWizard> WeakWizard = SharedThis(this);
	ZorvekMCPBridgeAISetup::RunSetupActionInBackground(MoveTemp(Action), [WeakWizard](const FZorvekMCPBridgeSetupActionResult& Result)
	{
		if (!Result.bSucceeded)
		{
			UE_LOG(LogZorvekMCPBridge, Warning, TEXT("%s"), *Result.Message);
		}
		if (const TSharedPtr<SZorvekMCPBridgeSetupWizard> Wizard = WeakWizard.Pin())
		{
			Wizard->FinishClientCommand(Result);
		}
	});
}

void SZorvekMCPBridgeSetupWizard::FinishClientCommand(const FZorvekMCPBridgeSetupActionResult& Result)
{
	RunningCommandLine.Reset();
	ResultMessage = Result.Message;
	ResultOutput = Result.Output;
	// The client's tool may have rewritten its configuration file.
	UpdatePortWarning(true);
}

#undef LOCTEXT_NAMESPACE
