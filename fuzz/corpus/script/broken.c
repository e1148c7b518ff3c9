switch (1) { ) case 1: while (1) { ) } case 2: 1 ? case + 3 : 4; do x++; until } else for (;; { /* 
