using UnrealBuildTool;

public class ZorvekMCPBridge : ModuleRules
{
	public ZorvekMCPBridge(ReadOnlyTargetRules Target) : base(Target)
	{
		PCHUsage = PCHUsageMode.UseExplicitOrSharedPCHs;
		IWYUSupport = IWYUSupport.Full;

		PublicDependencyModuleNames.AddRange(new string[]
		{
			"Core",
			"CoreUObject",
			"Engine"
		});

		PrivateDependencyModuleNames.AddRange(new string[]
		{
			"AssetRegistry",
			"HTTPServer",
			"Sockets",
			"Json",
			"Slate",
			"SlateCore",
			"ToolMenus",
			"Settings",
			"UnrealEd",
			"BlueprintGraph",
			"ApplicationCore",
			"InputCore"
		});
	}
}
