// Called from model files: "@cmd lunge 2.5" ahead of a frame runs lunge(2.5)
// when that frame comes up.
#import "data/scripts/common.h"

// Slide forward until halt().
void lunge(float speed)
{
	void self = getlocalvar("self");
	changeentityproperty(self, "velocity", speed * side(self), 0);
}

void halt()
{
	changeentityproperty(getlocalvar("self"), "velocity", 0, 0);
}

// Leave the ground.
void leap(float lift, float speed)
{
	void self = getlocalvar("self");
	tossentity(self, lift, speed * side(self), 0);
}

// Send something flying: model, how far ahead, how high.
void breathe(char model, float ahead, float high)
{
	void self = getlocalvar("self");
	projectile(1, model, ahead, 0, high, getentityproperty(self, "direction"), 0, 0, 0);
}
