using UnrealBuildTool;

public class ZorvekMCPBridge : ModuleRules
{
	public ZorvekMCPBridge(ReadOnlyTargetRules Target) : base(Target)
	{
		PCHUsage = PCHUsageMode.UseExplicitOrSharedPCHs;
		IWYUSupport = IWYUSupport.Full;

		// The module has no public headers yet, so every dependency is private.
		PrivateDependencyModuleNames.AddRange(new string[]
		{
			"Core",
			"CoreUObject",
			"Engine",
			"ApplicationCore",
			"AssetRegistry",
			"BlueprintGraph",
			"HTTPServer",
			"InputCore",
			"Json",
			"Settings",
			"Slate",
			"SlateCore",
			"Sockets",
			"ToolMenus",
			"UnrealEd"
		});
	}
}
