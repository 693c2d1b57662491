// Never run, but Clang 19 has every class linked that is named.

@implementation NSImageSymbolConfiguration
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight {
    (void)pointSize;
    (void)weight;
    return nil;
}
@end
