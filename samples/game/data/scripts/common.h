// Small helpers that several scripts share.

#define NEAR_Z 16

// How far apart two actors stand in depth.
float apart_z(void a, void b)
{
	float d = getentityproperty(a, "z") - getentityproperty(b, "z");
	if(d < 0){
		d = 0 - d;
	}
	return d;
}

// 1 when the actor looks right, -1 when left.
int side(void who)
{
	if(getentityproperty(who, "direction") == openborconstant("DIRECTION_LEFT")){
		return -1;
	}
	return 1;
}
