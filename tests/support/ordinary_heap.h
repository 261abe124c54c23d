// The ordinary heap, which can be made to run out once.
#pragma once

/// The nth call of calloc from now on answers null, once; 0 = none does.
void failOrdinaryHeap(int nth);
