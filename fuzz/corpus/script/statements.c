int i = 0; float s = 1.5; mixed a = array(2);
for (i = 0; i < 5; i++) { if (i == 2) continue; s += i * 2 % 3; set(a, i, s); }
while (s > 0) { s--; switch (i) { case 1: break; case 5: x = 0x1F; default: y = "a" + 'b'; } }
do { i--; forget(); } while (i && !isempty(a) || s ? 1 : 0);
