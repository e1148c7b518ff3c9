f(3); g(); } int f(int n, mixed t) { if (n < 1) return n; return f(n - 1) + 1; }
void g() { break; } void h() { { "}" } call(f(1), -~!2 << 1 & 3 ^ 4 | 5 >= 6 != 7);
