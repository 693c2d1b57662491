import KestrinDesignSystem

// The outlined ground of what stands apart from the page. Its outline is easy to see for those whose desktop asks for
// more contrast.
KestrinSurface {
    color: KestrinColors.surfaceMuted
    strokeColor: KestrinAppearance.highContrast ? KestrinColors.textMuted : KestrinColors.border
    strokeWidth: 1
}
