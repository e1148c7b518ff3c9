void main(){
	setglobalvar("guarded", getglobalvar("guarded") + 1);
}
