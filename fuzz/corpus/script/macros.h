#define A 1
#define F(x, y) x + y * F(y, x)
#ifdef A
#import "data/scripts/x.h" // note
#else
#undef B
#endif
int v = F(A, (2, 3)) + "A";
void main() { v = F(1); }
